// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstSettings.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <QRegularExpression>
#include <QStringList>

namespace {

/// The value of the property after this setting; invalid if it cannot be.
PStatus makeValue(const PDeviceProperty& property, const QString& field, const QString& text,
                  QVariant& value) {
    const QString id = QString::fromLatin1(property.id());
    if (field.isEmpty()) {
        value = PPropertyText::toValue(text, property.valueInner(), property.rangeInner());
        if (value.isValid())
            return PPropertyCheck::check(property, value);
        return PStatus::failure(u"\"%1\" cannot be \"%2\": expected %3"_qs.arg(
            id, PPropertyText::shortened(text), PPropertyCheck::expectation(property)));
    }
    value = property.valueInner();
    if (!PCompositeFields::isComposite(value))
        return PStatus::failure(u"\"%1\" has no fields: expected %1=VALUE, %2"_qs.arg(
            id, PPropertyCheck::expectation(property)));
    const PStatus status = PCompositeFields::write(value, field, text);
    return status.isOk() ? status : PStatus::failure(u"\"%1\": %2"_qs.arg(id, status.reason()));
}

QString knownIds(PDevice& device) {
    QStringList ids;
    for (const PDeviceProperty* property : device.supportProperties())
        ids.append(QString::fromLatin1(property->id()));
    return ids.join(u", "_qs);
}

} // namespace

PStatus PGstSettings::read(const QString& text) {
    m_settings.clear();
    // A comma ends a setting if another one follows; regions have commas of their own.
    static const QRegularExpression between(u",(?=\\s*[\\w-]+(\\.[\\w-]+)?\\s*=)"_qs);
    for (const QString& part : text.split(between, Qt::SkipEmptyParts)) {
        const qsizetype equals = part.indexOf(u'=');
        const QString name = part.left(equals).trimmed();
        if (equals <= 0 || name.isEmpty()) {
            m_settings.clear();
            return PStatus::failure(u"settings: \"%1\" is no setting: expected ID=VALUE or "
                                    "ID.FIELD=VALUE, with commas between them"_qs.arg(
                                        PPropertyText::shortened(part.trimmed())));
        }
        m_settings.append({name.section(u'.', 0, 0).toLatin1(), name.section(u'.', 1),
                           part.mid(equals + 1).trimmed()});
    }
    return PStatus::Ok;
}

void PGstSettings::add(const PGstSettings& other) {
    const QList<Setting> added = other.m_settings; // which may be these
    for (const Setting& setting : added) {
        // The whole value has all of its fields; a field changes the whole value before it.
        m_settings.removeIf([&setting](const Setting& earlier) {
            return earlier.id == setting.id &&
                   (setting.field.isEmpty() || earlier.field == setting.field);
        });
        m_settings.append(setting);
    }
}

PStatus PGstSettings::check(PDevice& device, const Setting& setting) {
    device.supportProperties();
    PDeviceProperty* const property = device.getProperty(setting.id);
    if (property == nullptr)
        return PStatus::failure(u"settings: the camera has no \"%1\": expected one of %2"_qs.arg(
            PPropertyText::shortened(QString::fromLatin1(setting.id)), knownIds(device)));
    if (property->isUnread())
        property->updateValueFromDevice();
    if (property->isUnread())
        return PStatus::failure(
            u"settings: the camera did not report \"%1\""_qs.arg(QString::fromLatin1(setting.id)));
    QVariant value;
    const PStatus status = makeValue(*property, setting.field, setting.text, value);
    return status.isOk() ? status : PStatus::failure(u"settings: "_qs + status.reason());
}

/// Why it was not taken; empty if it was.
QString PGstSettings::send(PDeviceProperty& property, const Setting& setting) {
    QVariant value;
    const PStatus status = makeValue(property, setting.field, setting.text, value);
    if (!status.isOk())
        return status.reason(); // an earlier setting has changed the range
    const PPropertyCheck::Outcome outcome = PPropertyCheck::send(property, value);
    if (outcome == PPropertyCheck::Outcome::Taken)
        return {};
    const QString has = outcome == PPropertyCheck::Outcome::Unread
                            ? u"the camera did not report what it has"_qs
                            : u"the camera has %1"_qs.arg(PPropertyText::ofValue(
                                  property.valueInner(), property.rangeInner()));
    return u"\"%1\": requested %2, %3"_qs.arg(QString::fromLatin1(setting.id), setting.text, has);
}

PStatus PGstSettings::apply(PDevice& device) const {
    for (const Setting& setting : m_settings) {
        const PStatus status = check(device, setting);
        if (!status.isOk())
            return status;
    }
    QStringList refused;
    for (const Setting& setting : m_settings) {
        const QString reason = send(*device.getProperty(setting.id), setting);
        if (!reason.isEmpty())
            refused.append(reason);
    }
    return refused.isEmpty() ? PStatus(PStatus::Ok)
                             : PStatus::failure(u"settings: "_qs + refused.join(u"; "_qs));
}
