// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckSettings.h>

#include <apps/pcdctl/check/bench/PCheckValues.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileOrder.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/PReadWatch.h>

#include <QHash>

#include <algorithm>
#include <utility>

namespace {

/// Readings have no role that can be set.
bool hasSettableRole(const PDeviceProperty& property) {
    const PRoleBindings roles = PPropertyRoles::of(property);
    return std::any_of(roles.begin(), roles.end(), [](const PRoleBinding& binding) {
        return binding.role != PRole::SensorTemperature && binding.method.isEmpty();
    });
}

} // namespace

bool PCheckSettings::maySet(const PDeviceProperty& property) {
    return !PCheckValues::isAction(property) && !PCheckValues::isThermal(property) &&
           (property.isSerializable() || hasSettableRole(property));
}

PCheckSettings::PCheckSettings(Returned returned)
    : m_returned(std::move(returned)) {
}

PStatus PCheckSettings::take(PDevice& device) {
    const PReadWatch watch;
    m_mode = device.getCurrentMode();
    if (watch.hasFailed())
        return PStatus::failure(
            u"the camera did not report its mode, which could not be set back"_qs);
    m_settings.clear();
    const QList<PDeviceProperty*>& properties = device.supportProperties();
    for (qsizetype index = 0; index < properties.size(); ++index) {
        if (!maySet(*properties[index]) || !PCheckValues::areComparable(*properties[index]))
            continue;
        const QVariant value = properties[index]->readFromDevice().value;
        m_returned();
        if (value.isValid())
            m_settings.append({index, value});
    }
    return PStatus::Ok;
}

bool PCheckSettings::has(qsizetype index) const {
    return std::any_of(m_settings.begin(), m_settings.end(),
                       [index](const Setting& setting) { return setting.index == index; });
}

void PCheckSettings::putBack(PDevice& device) const {
    const QList<PDeviceProperty*>& properties = device.supportProperties();
    QList<PDeviceProperty*> saved;
    QHash<PDeviceProperty*, QVariant> values;
    for (const Setting& setting : m_settings) {
        if (setting.index >= properties.size())
            continue;
        saved.append(properties[setting.index]);
        values.insert(saved.last(), setting.value);
    }
    for (PDeviceProperty* const property : PDeviceProfileOrder::sorted(saved)) {
        const PDeviceProperty::Reading has = property->readFromDevice();
        if (!PCheckValues::isSame(values[property], has.value, has.range))
            property->setValue(values[property]);
        m_returned();
    }
    // Some settings change others.
    for (PDeviceProperty* const property : properties) {
        property->updateValueFromDevice();
        m_returned();
    }
}

void PCheckSettings::putModeBack(PDevice& device) const {
    if (!m_mode.id.isEmpty() && device.getCurrentMode().id != m_mode.id)
        device.setMode(m_mode);
}

QStringList PCheckSettings::differences(PDevice& device, Which which) const {
    QStringList texts;
    const PDeviceMode mode = device.getCurrentMode();
    if (mode.id != m_mode.id) {
        texts.append(u"mode: it was %1, the camera has %2"_qs.arg(QString::fromLatin1(m_mode.id),
                                                                  QString::fromLatin1(mode.id)));
    }
    const QList<PDeviceProperty*>& properties = device.supportProperties();
    for (const Setting& setting : m_settings) {
        if (setting.index >= properties.size())
            continue;
        PDeviceProperty* const property = properties[setting.index];
        if (which == Saved && !property->isSerializable())
            continue;
        const PDeviceProperty::Reading has = property->readFromDevice();
        m_returned();
        if (!PCheckValues::isTaken(setting.value, has.value, has.range))
            texts.append(u"%1: %2"_qs.arg(QString::fromLatin1(property->id()),
                                          PCheckValues::describe(setting.value, has)));
    }
    return texts;
}
