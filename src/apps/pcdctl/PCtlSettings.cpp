// SPDX-License-Identifier: MIT
#include "PCtlSettings.h"

#include "PCameraSession.h"
#include "PCtlActionRun.h"
#include "PPropertyJson.h"
#include "PPropertyLookup.h"

#include <PCd/PDeviceProperty.h>
#include <PCd/PPropertyCheck.h>
#include <PCd/PPropertyText.h>

#include <algorithm>

namespace {

bool isAction(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Action;
}

/// The value that the text after the "=" means, if the property can have it.
PCtlOutcome readValue(const PDeviceProperty& property, const QString& text, QVariant& value) {
    value = PPropertyText::toValue(text, property);
    if (!value.isValid() && !isAction(property)) {
        return PCtlOutcome::wrongUsage(u"\"%1\" cannot be \"%2\": expected %3"_qs.arg(
            QString::fromLatin1(property.id()), text, PPropertyCheck::expectation(property)));
    }
    const PStatus status = PPropertyCheck::check(property, value);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::wrongUsage(status.reason());
}

} // namespace

PCtlOutcome PCtlSettings::read(const QStringList& words, PDevice& device) {
    for (const QString& word : words) {
        const PCtlOutcome outcome = readWord(word, device);
        if (!outcome.isDone())
            return outcome;
    }
    return {};
}

PCtlOutcome PCtlSettings::readWord(const QString& word, PDevice& device) {
    const qsizetype equals = word.indexOf(u'=');
    const QString id = word.left(equals).trimmed();
    PCtlOutcome outcome;
    PDeviceProperty* const property = PPropertyLookup::find(device, id, outcome);
    if (property == nullptr)
        return outcome;
    if (std::any_of(m_settings.begin(), m_settings.end(),
                    [&](const Setting& setting) { return setting.property == property; }))
        return PCtlOutcome::wrongUsage(u"\"%1\" is given twice: expected it once"_qs.arg(id));
    QVariant value;
    if (equals >= 0)
        outcome = readValue(*property, word.mid(equals + 1), value);
    else if (!isAction(*property))
        outcome = PCtlOutcome::wrongUsage(u"\"%1\" needs a value: expected %1=VALUE, %2"_qs.arg(
            id, PPropertyCheck::expectation(*property)));
    m_settings.append({property, value});
    return outcome;
}

PCtlOutcome PCtlSettings::apply(PCameraSession& session,
                                std::optional<std::chrono::milliseconds> timeout) {
    for (const Setting& setting : std::as_const(m_settings)) {
        if (setting.value.isValid()) {
            send(setting);
            continue;
        }
        // Nothing more to be had from a camera that hangs or is gone.
        const PCtlOutcome outcome = PCtlActionRun(session, *setting.property).run(timeout);
        if (!outcome.isDone())
            return outcome;
    }
    if (m_refused.isEmpty())
        return {};
    return PCtlOutcome::failed(PPropertyJson::linesOf(m_refused).join(u'\n'));
}

void PCtlSettings::send(const Setting& setting) {
    PDeviceProperty& property = *setting.property;
    if (PPropertyCheck::setAndAsk(property, setting.value))
        return;
    const QVariant range = property.rangeInner();
    m_refused.append({property.id(), u"wanted %1, the camera has %2"_qs.arg(
                                         PPropertyText::ofValue(setting.value, range),
                                         PPropertyText::ofValue(property.valueInner(), range))});
}

QList<PDeviceProperty*> PCtlSettings::properties() const {
    QList<PDeviceProperty*> all;
    for (const Setting& setting : m_settings) {
        if (isAction(*setting.property))
            all += PCtlActionRun::propertiesOf(*setting.property);
        else
            all.append(setting.property);
    }
    QList<PDeviceProperty*> once;
    for (PDeviceProperty* property : std::as_const(all)) {
        if (!once.contains(property))
            once.append(property);
    }
    return once;
}
