// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingsRestorer.h>

#include <apps/common/camera/PCaptureMode.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <chrono>

namespace {

/// Automatic exposure is set before time and gain, which a camera keeps only while it is off.
constexpr PRole exposureRoles[]{PRole::AutoExposure, PRole::ExposureTarget, PRole::ExposureTime,
                                PRole::Gain};

bool isChosenByCamera(PRole role) {
    return role == PRole::ExposureTime || role == PRole::Gain;
}

const QByteArray modeId = QByteArrayLiteral("mode");

constexpr std::chrono::milliseconds modeRetry(500);

/// An exposure property that profiles do not contain, or null.
PDeviceProperty* notSaved(const PDevice& device, PRole role) {
    PDeviceProperty* const property = PDeviceRoles::plainProperty(device, role);
    return property == nullptr || property->isSerializable() ? nullptr : property;
}

} // namespace

PSettingsRestorer::PSettingsRestorer(QObject* parent)
    : QObject(parent) {
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &PSettingsRestorer::remember);
}

void PSettingsRestorer::follow(PDevice* device) {
    release();
    m_device = device;
    findExposure();
    connect(device, &PDevice::modeChanged, this, [this] {
        m_isModeRead = false;
        rememberSoon();
    });
    for (PDeviceProperty* property : device->supportProperties())
        followProperty(property);
    m_isModeRead = m_held.remove(modeId);
    remember();
}

void PSettingsRestorer::followProperty(PDeviceProperty* property) {
    connect(property, &PDeviceProperty::valueChanged, this, &PSettingsRestorer::rememberSoon);
    connect(property, &PDeviceProperty::valueAboutToBeSent, this,
            [this, id = property->id()] { m_held.remove(id); });
}

/// Once for all changes of one turn.
void PSettingsRestorer::rememberSoon() {
    if (!m_later.isActive() || m_later.interval() > 0)
        m_later.start(0);
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

PStatus PSettingsRestorer::restore(PDevice& device, PDeviceProfileReport& report) {
    PDeviceProfilePlan plan(device);
    const PStatus status = plan.make(m_values.toProfile());
    if (!status.isOk()) {
        holdAll(device);
        return status;
    }
    report = plan.apply();
    restoreExposure(device, report);
    hold(report);
    return status;
}

void PSettingsRestorer::holdAll(const PDevice& device) {
    m_held = m_values.ids();
    m_held.insert(modeId);
    for (const PRole role : exposureRoles) {
        if (const PDeviceProperty* const property = notSaved(device, role))
            m_held.insert(property->id());
    }
}

/// What was not restored would else be lost when the present settings are kept.
void PSettingsRestorer::hold(const PDeviceProfileReport& report) {
    m_held.clear();
    for (const PDeviceProfileReport::Item& item : report.refused)
        m_held.insert(item.id.split('.').value(0)); // of a field, the property
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
    if (property->isUnread())
        report.refused.append({property->id(), tr("the camera did not report whether it took it")});
    else if (property->valueInner() != known->second)
        report.refused.append({property->id(), tr("the camera refused it")});
}

void PSettingsRestorer::remember() {
    if (!isReadable())
        return;
    rememberExposure();
    // Only when it has changed: reading the mode takes several calls to the camera.
    if (!m_isModeRead)
        m_isModeRead = m_values.renewMode(*m_device);
    m_values.renew(*m_device, m_held);
    if (!m_isModeRead)
        m_later.start(modeRetry);
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
        PCaptureMode::isTriggered(*m_captureMode, m_captureMode->reportedValue()))
        return;
    for (const auto& [role, property] : m_plain) {
        const QVariant value = property->reportedValue();
        if (value.isValid() && !m_held.contains(property->id()))
            m_exposure[role] = value;
    }
}

#include "moc_PSettingsRestorer.cpp"
