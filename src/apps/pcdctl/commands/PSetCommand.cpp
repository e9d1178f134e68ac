// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlSettings.h>
#include <apps/pcdctl/camera/PWithCamera.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/properties/PPropertyJson.h>
#include <apps/pcdctl/properties/PPropertyPrint.h>

namespace {

PCtlOutcome setValues(PCameraSession& session, const PCtlOptions& options) {
    PCtlSettings settings;
    const PCtlOutcome read = settings.read(options.words, *session.device());
    if (!read.isDone())
        return read;
    const PCtlOutcome outcome = settings.apply(session, options.timeout);
    if (session.isUnplugged())
        return outcome;
    const PStatus printed =
        printPropertyValues(session.cameraId(), settings.properties(), options.json,
                            {{u"refused"_qs, PPropertyJson::reportItems(settings.refused())}});
    return outcome.isDone() ? session.readOutcome(printed) : outcome;
}

} // namespace

PCtlOutcome runSetCommand(PCtlHost& host, const PCtlOptions& options) {
    return withCamera(host, options,
                      [&](PCameraSession& session) { return setValues(session, options); });
}
