// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingsRestorer.h>

#include <apps/common/camera/PCaptureMode.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <utility>

namespace {

/// Automatic exposure is set before time and gain, which a camera keeps only while it is off.
constexpr PRole exposureRoles[]{PRole::AutoExposure, PRole::ExposureTarget, PRole::ExposureTime,
                                PRole::Gain};

bool isChosenByCamera(PRole role) {
    return role == PRole::ExposureTime || role == PRole::Gain;
}

/// An exposure property that profiles do not contain, or null.
PDeviceProperty* notSaved(const PDevice& device, PRole role) {
    PDeviceProperty* const property = PDeviceRoles::plainProperty(device, role);
    return property == nullptr || property->isSerializable() ? nullptr : property;
}

} // namespace

PSettingsRestorer::PSettingsRestorer(QObject* parent)
    : QObject(parent) {
    m_later.setSingleShot(true);
    m_later.setInterval(0); // once for all changes of one turn
    connect(&m_later, &QTimer::timeout, this, &PSettingsRestorer::remember);
}

void PSettingsRestorer::follow(PDevice* device) {
    release();
    m_device = device;
    findExposure();
    const auto soon = [this] {
        if (!m_later.isActive())
            m_later.start();
    };
    connect(device, &PDevice::modeChanged, this, [this, soon] {
        m_isModeRead = false;
        soon();
    });
    for (PDeviceProperty* property : device->supportProperties())
        connect(property, &PDeviceProperty::valueChanged, this, soon);
    m_isModeRead = false;
    remember();
}

void PSettingsRestorer::findExposure() {
    m_exposureTime = PDeviceRoles::property(*m_device, PRole::ExposureTime);
    m_captureMode = PCaptureMode::property(*m_device);
    m_plain.clear();
    for (const PRole role : exposureRoles) {
        if (const PDeviceProperty* const property = notSaved(*m_device, role))
            m_plain[role] = property;
    }
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

/// Profiles hold the exposure as a composite property, not as plain ones. But the composite one
/// does not follow the plain ones: values last set through them would be lost.
void PSettingsRestorer::restoreExposure(PDevice& device, PDeviceProfileReport& report) const {
    if (PCaptureMode::isTriggered(device))
        return; // then the composite property has another exposure
    const auto automatic = m_exposure.find(PRole::AutoExposure);
    const bool isAutomatic = automatic != m_exposure.end() && automatic->second.toBool();
    for (const PRole role : exposureRoles) {
        if (!isAutomatic || !isChosenByCamera(role))
            restoreValue(device, role, report);
    }
}

void PSettingsRestorer::restoreValue(PDevice& device, PRole role,
                                     PDeviceProfileReport& report) const {
    PDeviceProperty* const property = notSaved(device, role);
    const auto known = m_exposure.find(role);
    if (property == nullptr || known == m_exposure.end() || !known->second.isValid())
        return;
    property->setValue(known->second);
    if (property->valueInner() != known->second)
        report.refused.append({property->id(), tr("the camera refused it")});
}

void PSettingsRestorer::remember() {
    if (!isReadable())
        return;
    rememberExposure();
    // Reading the mode takes several calls to the camera.
    if (std::exchange(m_isModeRead, true))
        m_values.renew(*m_device);
    else
        m_values = PDeviceProfileValues::ofDevice(*m_device);
}

/// A camera that was just unplugged returns zeros until its device is removed, and 0 is not a valid
/// exposure time.
bool PSettingsRestorer::isReadable() const {
    const bool exposesForNoTime =
        m_exposureTime != nullptr &&
        PPropertyRoles::value(*m_exposureTime).number(PRole::ExposureTime).value_or(1) <= 0;
    return !exposesForNoTime && m_device->isAnswering();
}

/// The exposure of the live picture: in triggered capture the camera has another one.
void PSettingsRestorer::rememberExposure() {
    if (m_captureMode != nullptr &&
        PCaptureMode::isTriggered(*m_captureMode, m_captureMode->valueInner()))
        return;
    for (const auto& [role, property] : m_plain)
        m_exposure[role] = property->valueInner();
}
