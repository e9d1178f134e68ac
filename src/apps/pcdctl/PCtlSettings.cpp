// SPDX-License-Identifier: MIT
#include "PCtlSettings.h"

#include "PCameraSession.h"
#include "PCtlActionRun.h"
#include "PPropertyJson.h"
#include "PPropertyLookup.h"

#include <PCd/PDeviceProperty.h>
#include <PCd/PGadgetFields.h>
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
    const QString name = word.left(equals).trimmed();
    Setting setting;
    setting.field = name.section(u'.', 1);
    PCtlOutcome outcome;
    setting.property = PPropertyLookup::find(device, name.section(u'.', 0, 0), outcome);
    if (setting.property == nullptr)
        return outcome;
    if (std::any_of(m_settings.begin(), m_settings.end(), [&](const Setting& before) {
            return before.property == setting.property && before.field == setting.field;
        }))
        return PCtlOutcome::wrongUsage(u"\"%1\" is given twice: expected it once"_qs.arg(name));
    if (equals >= 0)
        outcome = readAssignment(setting, word.mid(equals + 1));
    else if (!isAction(*setting.property))
        outcome = PCtlOutcome::wrongUsage(u"\"%1\" needs a value: expected %1=VALUE, %2"_qs.arg(
            name, PPropertyCheck::expectation(*setting.property)));
    m_settings.append(setting);
    return outcome;
}

PCtlOutcome PCtlSettings::readAssignment(Setting& setting, const QString& text) const {
    if (setting.field.isEmpty())
        return readValue(*setting.property, text, setting.value);
    setting.text = text;
    QVariant tried = setting.property->valueInner();
    const PStatus status = PGadgetFields::write(tried, setting.field, text);
    return status.isOk() ? PCtlOutcome()
                         : PCtlOutcome::wrongUsage(u"\"%1\": %2"_qs.arg(
                               QString::fromLatin1(setting.property->id()), status.reason()));
}

PCtlOutcome PCtlSettings::apply(PCameraSession& session,
                                std::optional<std::chrono::milliseconds> timeout) {
    for (const Setting& setting : std::as_const(m_settings)) {
        if (!setting.field.isEmpty()) {
            sendField(setting);
            continue;
        }
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
    refuse(setting, PPropertyText::ofValue(setting.value, range),
           PPropertyText::ofValue(property.valueInner(), range));
}

/// The other fields are those of now: a field set before may have changed them.
void PCtlSettings::sendField(const Setting& setting) {
    PDeviceProperty& property = *setting.property;
    QVariant wanted = property.valueInner();
    PGadgetFields::write(wanted, setting.field, setting.text);
    PPropertyCheck::setAndAsk(property, wanted);
    const QVariant wantedField = PGadgetFields::read(wanted, setting.field);
    const QVariant actualField = PGadgetFields::read(property.valueInner(), setting.field);
    if (wantedField != actualField)
        refuse(setting, wantedField.toString(), actualField.toString());
}

void PCtlSettings::refuse(const Setting& setting, const QString& wanted, const QString& actual) {
    QByteArray name = setting.property->id();
    if (!setting.field.isEmpty())
        name += '.' + setting.field.toLatin1();
    m_refused.append({name, u"wanted %1, the camera has %2"_qs.arg(wanted, actual)});
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
