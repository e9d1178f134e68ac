// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileValues.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PReadWatch.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <algorithm>
#include <cmath>
#include <utility>

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

} // namespace

PDeviceProfileValues PDeviceProfileValues::ofDevice(PDevice& device) {
    PDeviceProfileValues values;
    values.renewMode(device);
    values.renew(device);
    return values;
}

bool PDeviceProfileValues::renewMode(PDevice& device) {
    m_model = device.model();
    m_serial = device.serial();
    const PReadWatch watch;
    m_mode = QString::fromLatin1(device.reportedMode().id);
    return !watch.hasFailed();
}

void PDeviceProfileValues::renew(PDevice& device) {
    renew(device, {});
}

void PDeviceProfileValues::renew(PDevice& device, const QSet<QByteArray>& held) {
    const QList<PDeviceProperty*>& properties = device.supportProperties();
    const QList<Setting> before = std::exchange(m_settings, {});
    m_settings.reserve(properties.size());
    for (const PDeviceProperty* property : properties) {
        const bool isTaken = property->isSerializable() && !held.contains(property->id());
        const QVariant value = isTaken ? property->reportedValue() : QVariant();
        if (isSetting(value)) {
            m_settings.append({property->id(), value, property->rangeInner()});
            continue;
        }
        const auto known = std::find_if(before.begin(), before.end(), [&](const Setting& setting) {
            return setting.id == property->id();
        });
        if (known != before.end())
            m_settings.append(*known);
    }
}

QSet<QByteArray> PDeviceProfileValues::ids() const {
    QSet<QByteArray> all;
    for (const Setting& setting : m_settings)
        all.insert(setting.id);
    return all;
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
