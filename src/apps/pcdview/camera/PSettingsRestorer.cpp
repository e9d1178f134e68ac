// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingsRestorer.h>

#include <apps/common/camera/PCaptureMode.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PDeviceProperty.h>

namespace {

constexpr const char* automaticId = "autoexponeable";
constexpr const char* targetId = "autoexpotarget";
constexpr const char* timeId = "autoexpottime";
constexpr const char* gainId = "autoexpogain";

} // namespace

PSettingsRestorer::PSettingsRestorer(QObject* parent)
    : QObject(parent) {
    m_later.setSingleShot(true);
    m_later.setInterval(0); // once for all that changes together
    connect(&m_later, &QTimer::timeout, this, &PSettingsRestorer::remember);
}

void PSettingsRestorer::follow(PDevice* device) {
    release();
    m_device = device;
    const auto soon = [this] {
        if (!m_later.isActive())
            m_later.start();
    };
    connect(device, &PDevice::modeChanged, this, soon);
    for (PDeviceProperty* property : device->supportProperties())
        connect(property, &PDeviceProperty::valueChanged, this, soon);
    remember();
}

void PSettingsRestorer::release() {
    m_later.stop();
    if (m_device == nullptr)
        return;
    disconnect(m_device, nullptr, this, nullptr);
    for (PDeviceProperty* property : m_device->supportProperties())
        disconnect(property, nullptr, this, nullptr);
    m_device = nullptr;
}

PStatus PSettingsRestorer::restore(PDevice& device, PDeviceProfileReport& report) const {
    PDeviceProfilePlan plan(device);
    const PStatus status = plan.make(m_values.toProfile());
    if (!status.isOk())
        return status;
    report = plan.apply();
    restoreExposure(device, report);
    return status;
}

/// The plain properties of the exposure are in no profile, as a composite one has it all. That one
/// does not follow them, though: what was set by them last would be gone.
void PSettingsRestorer::restoreExposure(PDevice& device, PDeviceProfileReport& report) const {
    if (PCaptureMode::isTriggered(device))
        return; // the composite one has another exposure then
    for (const char* const id : {automaticId, targetId})
        restoreValue(device, id, report);
    if (m_exposure.value(automaticId).toBool())
        return; // the rest is the camera's to choose
    for (const char* const id : {timeId, gainId})
        restoreValue(device, id, report);
}

void PSettingsRestorer::restoreValue(PDevice& device, const char* id,
                                     PDeviceProfileReport& report) const {
    PDeviceProperty* const property = device.getProperty(id);
    const QVariant value = m_exposure.value(id);
    if (property == nullptr || !value.isValid())
        return;
    property->setValue(value);
    if (property->valueInner() != value)
        report.refused.append({id, tr("the camera rejected it")});
}

void PSettingsRestorer::remember() {
    // A camera that has just lost its cable answers zeros until its device is removed, and no
    // camera exposes for no time at all.
    const PDeviceProperty* const time = m_device->getProperty(timeId);
    const bool exposesForNoTime = time != nullptr && time->valueInner().toDouble() <= 0;
    if (exposesForNoTime || !m_device->isAnswering())
        return;
    rememberExposure();
    m_values = PDeviceProfileValues::ofDevice(*m_device);
}

/// That of the live picture: in triggered capture the camera has another one.
void PSettingsRestorer::rememberExposure() {
    if (PCaptureMode::isTriggered(*m_device))
        return;
    for (const char* const id : {automaticId, targetId, timeId, gainId}) {
        if (const PDeviceProperty* const property = m_device->getProperty(id))
            m_exposure.insert(id, property->valueInner());
    }
}
