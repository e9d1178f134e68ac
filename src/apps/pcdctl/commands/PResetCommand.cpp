// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PWithCamera.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/properties/PPropertyJson.h>
#include <apps/pcdctl/properties/PPropertyLookup.h>
#include <apps/pcdctl/properties/PPropertyPrint.h>
#include <apps/pcdctl/properties/PPropertySend.h>

#include <PCd/profile/PDeviceProfileOrder.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PPropertyText.h>

namespace {

using Items = QList<PDeviceProfileReport::Item>;

/// Sends defaults to some properties of a camera.
class PResetRun {
public:
    explicit PResetRun(const QList<PDeviceProperty*>& properties)
        : m_properties(PDeviceProfileOrder::sorted(properties)) {
        for (PDeviceProperty* property : m_properties)
            reset(*property);
    }

    /// All properties to be reset, in the order in which they were reset.
    const QList<PDeviceProperty*>& properties() const { return m_properties; }
    /// Those without a default that can be sent.
    const Items& kept() const { return m_kept; }
    /// Those whose default the camera refused.
    const Items& refused() const { return m_refused; }

private:
    void reset(PDeviceProperty& property) {
        // What was not reported when the camera was opened may be reported now.
        if (property.isUnread())
            property.updateValueFromDevice();
        const QVariant value = property.defaultValue();
        const QVariant range = property.rangeInner();
        const QString text = PPropertyText::ofValue(value, range);
        if (!value.isValid()) {
            m_kept.append({property.id(), u"it has no default"_qs});
        } else if (!PPropertyCheck::check(property, value).isOk()) {
            m_kept.append({property.id(), u"its default %1 was not sent: %2"_qs.arg(
                                              text, describeExpectation(property))});
        } else if (const QString reason = PPropertySend::send(property, value); !reason.isEmpty()) {
            m_refused.append({property.id(), reason});
        }
    }

    /// Without range and value, the type is not known either.
    static QString describeExpectation(const PDeviceProperty& property) {
        return property.isUnread() && !property.rangeInner().isValid()
                   ? u"the camera does not report what it has"_qs
                   : u"expected %1"_qs.arg(PPropertyCheck::expectation(property));
    }

    QList<PDeviceProperty*> m_properties;
    Items m_kept;
    Items m_refused;
};

/// The properties of "reset" without ids.
QList<PDeviceProperty*> allWithDefaults(PDevice& device) {
    QList<PDeviceProperty*> all;
    for (PDeviceProperty* property : device.supportProperties()) {
        if (property->isSerializable() && property->defaultValue().isValid())
            all.append(property);
    }
    return all;
}

PCtlOutcome resetValues(PCameraSession& session, const PCtlOptions& options) {
    PCtlOutcome outcome;
    const bool areNamed = !options.words.isEmpty();
    const QList<PDeviceProperty*> properties =
        areNamed ? PPropertyLookup::findAll(*session.device(), options.words, outcome)
                 : allWithDefaults(*session.device());
    if (!outcome.isDone())
        return outcome;
    const PResetRun run(properties);
    const PStatus printed =
        printPropertyValues(session.cameraId(), run.properties(), options.json,
                            {{u"kept"_qs, PPropertyJson::reportItems(run.kept())},
                             {u"refused"_qs, PPropertyJson::reportItems(run.refused())}});
    // Properties that the user did not name are not failures, but are reported.
    const Items failures = areNamed ? run.kept() + run.refused() : run.refused();
    for (const QString& line : PPropertyJson::reportLines(areNamed ? Items() : run.kept()))
        PCtlOutput::printMessage(u"not reset: "_qs + line);
    return failures.isEmpty()
               ? session.readOutcome(printed)
               : PCtlOutcome::failed(PPropertyJson::reportLines(failures).join(u'\n'));
}

} // namespace

PCtlOutcome runResetCommand(PCtlHost& host, const PCtlOptions& options) {
    return withCamera(host, options,
                      [&](PCameraSession& session) { return resetValues(session, options); });
}
