// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PWithCamera.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/properties/PPropertyLookup.h>
#include <apps/pcdctl/properties/PPropertyPrint.h>

#include <PCd/property/PDeviceProperty.h>

namespace {

PCtlOutcome checkHaveValues(const QList<PDeviceProperty*>& properties) {
    for (const PDeviceProperty* property : properties) {
        if (property->type() == PCD::DevicePropertyType::Action) {
            return PCtlOutcome::wrongUsage(u"\"%1\" is an action and has no value"_qs.arg(
                QString::fromLatin1(property->id())));
        }
    }
    return {};
}

PCtlOutcome printValues(PCameraSession& session, const PCtlOptions& options) {
    PCtlOutcome outcome;
    const QList<PDeviceProperty*> properties =
        PPropertyLookup::findAll(*session.device(), options.words, outcome);
    if (outcome.isDone())
        outcome = checkHaveValues(properties);
    if (!outcome.isDone())
        return outcome;
    return session.readOutcome(printPropertyValues(session.cameraId(), properties, options.json));
}

} // namespace

PCtlOutcome runGetCommand(PCtlHost& host, const PCtlOptions& options) {
    return withCamera(host, options,
                      [&](PCameraSession& session) { return printValues(session, options); });
}
