// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileDiff.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PQuietReading.h>
#include <PCd/property/PReadWatch.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyEncoding.h>
#include <PCd/property/value/PPropertyText.h>

#include <optional>

namespace {

using Difference = PDeviceProfileDiff::Difference;

/// The form in which a profile would contain the property; invalid if it would not.
QVariant savedForm(const PDeviceProperty* property) {
    if (property == nullptr || !property->isSerializable())
        return QVariant();
    return PPropertyEncoding::toForm(property->valueInner(), property->rangeInner());
}

QString toText(const QVariantMap& fields) {
    QStringList parts;
    for (auto field = fields.begin(); field != fields.end(); ++field)
        parts.append(field.key() + u'=' + PPropertyText::ofValue(field.value(), {}));
    return parts.join(u' ');
}

QString toText(const QVariant& form, const PDeviceProperty* property) {
    if (!form.isValid())
        return QString();
    if (form.typeId() == QMetaType::QVariantMap && property == nullptr)
        return toText(form.toMap());
    const QVariant range = property == nullptr ? QVariant() : property->rangeInner();
    const QVariant current = property == nullptr ? QVariant() : property->valueInner();
    const QVariant value = PPropertyEncoding::fromForm(form, current, range);
    return PPropertyText::ofValue(value.isValid() ? value : form, range);
}

/// Compares one field; the file may lack it, or have a value of a type that the field cannot have.
std::optional<Difference> compareField(const QByteArray& id, const QString& field,
                                       const QVariant& inFile, const QVariant& current) {
    QVariant changed = current;
    const bool isPossible = PCompositeFields::assign(changed, field, inFile);
    const QVariant wanted = isPossible ? PCompositeFields::read(changed, field) : inFile;
    const QVariant onCamera = PCompositeFields::read(current, field);
    if (isPossible && wanted == onCamera)
        return std::nullopt;
    return Difference{id + '.' + field.toUtf8(), PPropertyText::ofValue(wanted, {}),
                      PPropertyText::ofValue(onCamera, {})};
}

QList<Difference> differencesOfFields(const QByteArray& id, const QVariantMap& inFile,
                                      const QVariant& current) {
    QStringList names = PCompositeFields::storedNames(current);
    for (const QString& name : inFile.keys()) {
        if (!names.contains(name))
            names.append(name);
    }
    QList<Difference> differences;
    for (const QString& name : std::as_const(names)) {
        if (const auto difference = compareField(id, name, inFile.value(name), current))
            differences.append(*difference);
    }
    return differences;
}

/// The fields of a form, even if an older file has them as bytes.
std::optional<QVariantMap> fieldsIn(const QVariant& form, const PDeviceProperty* property) {
    if (savedForm(property).typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariant current = property->valueInner();
    const QVariant fields =
        form.typeId() == QMetaType::QByteArray
            ? PPropertyEncoding::toForm(PPropertyEncoding::fromForm(form, current, {}), {})
            : form;
    return fields.typeId() == QMetaType::QVariantMap ? std::optional(fields.toMap()) : std::nullopt;
}

QList<Difference> compareSetting(const QByteArray& id, const QVariant& inFile,
                                 const PDeviceProperty* property) {
    if (property != nullptr) {
        if (property->isUnread())
            return {};
        if (const auto fields = fieldsIn(inFile, property))
            return differencesOfFields(id, *fields, property->valueInner());
    }
    const QVariant onCamera = savedForm(property);
    if (PPropertyEncoding::areEqual(inFile, onCamera))
        return {};
    return {{id, toText(inFile, property), toText(onCamera, property)}};
}

/// Fails if the device does not report its mode.
PStatus compareModes(const PDeviceProfile::Setting& mode, PDevice& device,
                     QList<Difference>& differences) {
    const PReadWatch watch;
    const QString inFile = mode.form.toString();
    const QString onCamera = QString::fromLatin1(device.reportedMode().id);
    if (watch.hasFailed())
        return PStatus::failure(PDeviceProfileDiff::tr("the camera did not report its mode"));
    if (inFile != onCamera)
        differences.append({QByteArrayLiteral("mode"), inFile, onCamera});
    return PStatus::Ok;
}

} // namespace

QList<Difference> PDeviceProfileDiff::between(const PDeviceProfile& profile, PDevice& device) {
    QList<Difference> differences;
    find(profile, device, differences);
    return differences;
}

PStatus PDeviceProfileDiff::find(const PDeviceProfile& profile, PDevice& device,
                                 QList<Difference>& differences) {
    QList<QByteArray> ids;
    const PQuietReading reading(PDeviceProfileFile::savedProperties(device));
    const PStatus mode = compareModes(profile.mode, device, differences);
    for (const PDeviceProfile::Setting& setting : profile.settings) {
        differences += compareSetting(setting.id, setting.form, device.getProperty(setting.id));
        ids.append(setting.id);
    }
    for (const PDeviceProperty* property : device.supportProperties()) {
        if (!ids.contains(property->id()))
            differences += compareSetting(property->id(), QVariant(), property);
    }
    const PStatus read = reading.status();
    return read.isOk() ? mode : read;
}
