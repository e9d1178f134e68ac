// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileValues.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <cmath>

namespace {

/// False for what no profile contains: the missing value of an action, and the values that stand
/// for a failed reading (an empty region, a number that is not finite).
bool isSetting(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QRect:
        return !value.toRect().isEmpty();
    case QMetaType::Double:
        return std::isfinite(value.toDouble());
    default:
        return value.isValid();
    }
}

bool hasSetting(const PDeviceProperty& property) {
    return property.isSerializable() && isSetting(property.valueInner());
}

} // namespace

PDeviceProfileValues PDeviceProfileValues::ofDevice(PDevice& device) {
    PDeviceProfileValues values;
    values.m_model = device.model();
    values.m_serial = device.serial();
    values.m_mode = QString::fromLatin1(device.getCurrentMode().id);
    values.renew(device);
    return values;
}

void PDeviceProfileValues::renew(PDevice& device) {
    const QList<PDeviceProperty*>& properties = device.supportProperties();
    m_settings.clear();
    m_settings.reserve(properties.size());
    for (const PDeviceProperty* property : properties) {
        if (hasSetting(*property))
            m_settings.append({property->id(), property->valueInner(), property->rangeInner()});
    }
}

PDeviceProfile PDeviceProfileValues::toProfile() const {
    PDeviceProfile profile;
    profile.model = m_model;
    profile.serial = m_serial;
    if (!m_mode.isEmpty())
        profile.mode = {QByteArrayLiteral("mode"), m_mode, QString()};
    for (const Setting& setting : m_settings) {
        const QVariant form = PPropertyEncoding::toForm(setting.value, setting.range);
        if (form.isValid())
            profile.settings.append({setting.id, form, QString()});
    }
    return profile;
}
