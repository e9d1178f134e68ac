// SPDX-License-Identifier: MIT
#include <PCd/PDeviceProfileDiff.h>

#include <PCd/PDevice.h>
#include <PCd/PDeviceProperty.h>
#include <PCd/PPropertyStreamForm.h>
#include <PCd/PPropertyText.h>
#include <PCd/PQuietReading.h>

#include <optional>

namespace {

using Difference = PDeviceProfileDiff::Difference;

/// What a profile would hold of a property; invalid if nothing.
QVariant savedForm(const PDeviceProperty* property) {
    if (property == nullptr || !property->isSerializable())
        return QVariant();
    return PPropertyStreamForm::toForm(property->valueInner(), property->rangeInner());
}

QString textOf(const QVariant& form, const PDeviceProperty* property) {
    if (!form.isValid())
        return QString();
    const QVariant range = property == nullptr ? QVariant() : property->rangeInner();
    const QVariant current = property == nullptr ? QVariant() : property->valueInner();
    const QVariant value = PPropertyStreamForm::fromForm(form, current, range);
    return PPropertyText::ofValue(value.isValid() ? value : form, range);
}

std::optional<Difference> differenceOf(const QByteArray& id, const QVariant& inFile,
                                       const PDeviceProperty* property) {
    const QVariant onCamera = savedForm(property);
    if (PPropertyStreamForm::areEqual(inFile, onCamera))
        return std::nullopt;
    return Difference{id, textOf(inFile, property), textOf(onCamera, property)};
}

std::optional<Difference> differenceOfModes(const PDeviceProfile::Setting& mode, PDevice& device) {
    const QString inFile = mode.form.toString();
    const QString onCamera = QString::fromLatin1(device.getCurrentMode().id);
    if (inFile == onCamera)
        return std::nullopt;
    return Difference{QByteArrayLiteral("mode"), inFile, onCamera};
}

} // namespace

QList<Difference> PDeviceProfileDiff::between(const PDeviceProfile& profile, PDevice& device) {
    QList<Difference> differences;
    const auto add = [&](const std::optional<Difference>& difference) {
        if (difference)
            differences.append(*difference);
    };
    QList<QByteArray> ids;
    const PQuietReading reading(device.supportProperties());
    add(differenceOfModes(profile.mode, device));
    for (const PDeviceProfile::Setting& setting : profile.settings) {
        add(differenceOf(setting.id, setting.form, device.getProperty(setting.id)));
        ids.append(setting.id);
    }
    for (const PDeviceProperty* property : device.supportProperties()) {
        if (!ids.contains(property->id()))
            add(differenceOf(property->id(), QVariant(), property));
    }
    return differences;
}
