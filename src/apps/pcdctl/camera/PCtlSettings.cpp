// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlSettings.h>

#include <apps/pcdctl/camera/PCameraSession.h>
#include <apps/pcdctl/camera/PCtlActionRun.h>
#include <apps/pcdctl/properties/PPropertyJson.h>
#include <apps/pcdctl/properties/PPropertyLookup.h>
#include <apps/pcdctl/properties/PPropertySend.h>

#include <apps/common/camera/PCaptureMode.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <algorithm>

namespace {

bool isAction(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Action;
}

/// False if the camera does not report the value: then its type and fields are not known. What it
/// did not report before is read again.
bool hasValue(PDeviceProperty& property) {
    if (property.isUnread())
        property.updateValueFromDevice();
    return !property.isUnread();
}

/// The value of the text after the "=", if the property can have it.
PCtlOutcome readValue(const PDeviceProperty& property, const QString& text, QVariant& value) {
    value = PPropertyText::toValue(text, property.valueInner(), property.rangeInner());
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
    const QString field = name.section(u'.', 1);
    PCtlOutcome outcome;
    // With nothing after the dot, the whole word is an id, which does not exist.
    PDeviceProperty* const property =
        PPropertyLookup::find(device, field.isEmpty() ? name : name.section(u'.', 0, 0), outcome);
    if (property == nullptr)
        return outcome;
    if (!hasValue(*property))
        return PCtlOutcome::failed(u"the camera did not report \"%1\""_qs.arg(name));
    if (isGiven(property, field))
        return PCtlOutcome::wrongUsage(u"\"%1\" is given twice: expected it once"_qs.arg(name));
    if (equals < 0 && !field.isEmpty())
        return PCtlOutcome::wrongUsage(u"\"%1\" needs a value: expected %1=VALUE"_qs.arg(name));
    if (equals < 0 && !isAction(*property))
        return PCtlOutcome::wrongUsage(u"\"%1\" needs a value: expected %1=VALUE, %2"_qs.arg(
            name, PPropertyCheck::expectation(*property)));
    if (!field.isEmpty())
        return readField(*property, {field, word.mid(equals + 1)});
    QVariant value;
    if (equals >= 0)
        outcome = readValue(*property, word.mid(equals + 1), value);
    m_settings.append({property, {}, value});
    return outcome;
}

bool PCtlSettings::isGiven(const PDeviceProperty* property, const QString& field) const {
    return std::any_of(m_settings.begin(), m_settings.end(), [&](const Setting& setting) {
        const bool hasField = std::any_of(setting.fields.begin(), setting.fields.end(),
                                          [&](const Field& given) { return given.name == field; });
        return setting.property == property &&
               (field.isEmpty() || setting.fields.isEmpty() || hasField);
    });
}

PCtlOutcome PCtlSettings::readField(PDeviceProperty& property, const Field& field) {
    const QString id = QString::fromLatin1(property.id());
    QVariant tried = property.valueInner();
    if (!PCompositeFields::isComposite(tried))
        return PCtlOutcome::wrongUsage(u"\"%1\" has no fields: expected %1=VALUE, %2"_qs.arg(
            id, PPropertyCheck::expectation(property)));
    const PStatus status = PCompositeFields::write(tried, field.name, field.text);
    if (!status.isOk())
        return PCtlOutcome::wrongUsage(u"\"%1\": %2"_qs.arg(id, status.reason()));
    addField(property, field);
    return {};
}

/// Fields of one value are sent together: one may mean nothing without the other.
void PCtlSettings::addField(PDeviceProperty& property, const Field& field) {
    for (Setting& setting : m_settings) {
        if (setting.property == &property)
            return setting.fields.append(field);
    }
    m_settings.append({&property, {field}, QVariant()});
}

PCtlOutcome PCtlSettings::apply(PCameraSession& session,
                                std::optional<std::chrono::milliseconds> timeout) {
    for (const Setting& setting : std::as_const(m_settings)) {
        if (!setting.fields.isEmpty()) {
            sendFields(setting);
            continue;
        }
        if (setting.value.isValid()) {
            send(setting);
            continue;
        }
        // A camera that hangs or is gone returns nothing more.
        const PCtlOutcome outcome = PCtlActionRun(session, *setting.property).run(timeout);
        if (!outcome.isDone())
            return outcome;
    }
    if (m_refused.isEmpty())
        return {};
    return PCtlOutcome::failed(PPropertyJson::reportLines(m_refused).join(u'\n'));
}

void PCtlSettings::send(const Setting& setting) {
    const QString reason = PPropertySend::send(*setting.property, setting.value);
    if (!reason.isEmpty())
        m_refused.append({setting.property->id(), reason});
}

/// Fields that are not named stay as the camera has them now: automatic exposure may have moved
/// since the camera was opened. In triggered capture the camera's exposure time is the triggered
/// one, which must not replace the live one.
void PCtlSettings::sendFields(const Setting& setting) {
    PDeviceProperty& property = *setting.property;
    if (!PCaptureMode::isTriggered(*property.device()))
        property.updateValueFromDevice();
    if (property.isUnread()) {
        m_refused.append({property.id(), u"not sent, because the camera did not report it"_qs});
        return;
    }
    QVariant requested = property.valueInner();
    for (const Field& field : setting.fields)
        PCompositeFields::write(requested, field.name, field.text);
    if (PPropertyCheck::send(property, requested) == PPropertyCheck::Outcome::Unread) {
        m_refused.append({property.id(), PPropertySend::unreadReason(
                                             PPropertyText::ofValue(requested, QVariant()))});
        return;
    }
    for (const Field& field : setting.fields) {
        const QVariant requestedField = PCompositeFields::read(requested, field.name);
        const QVariant actualField = PCompositeFields::read(property.valueInner(), field.name);
        if (requestedField != actualField)
            refuse(property.id() + '.' + field.name.toLatin1(), requestedField.toString(),
                   actualField.toString());
    }
}

void PCtlSettings::refuse(const QByteArray& name, const QString& requested, const QString& actual) {
    m_refused.append({name, u"requested %1, the camera has %2"_qs.arg(requested, actual)});
}

QList<PDeviceProperty*> PCtlSettings::properties() const {
    QList<PDeviceProperty*> all;
    for (const Setting& setting : m_settings) {
        if (isAction(*setting.property))
            all += PCtlActionRun::affectedProperties(*setting.property);
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
