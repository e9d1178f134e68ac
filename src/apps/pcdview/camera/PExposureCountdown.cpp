// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PExposureCountdown.h>

#include <apps/common/camera/PCaptureMode.h>
#include <apps/common/camera/PFrameExposure.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>

#include <algorithm>
#include <cmath>

namespace {

using std::chrono::microseconds;

// Shorter exposures give more than one picture per second; showing their rate is enough.
constexpr microseconds shortestToWaitFor(900'000);

microseconds readExposure(const PDevice& device) {
    const auto milliseconds = PFrameExposure::of(PDeviceRoles::of(device)).milliseconds;
    return microseconds(std::llround(milliseconds.value_or(0) * 1000));
}

} // namespace

PExposureCountdown::PExposureCountdown(PDevice* device, Now now)
    : m_device(device)
    , m_now(std::move(now)) {
    restart();
    // A frame only stores the time: the exposure is looked up when left() needs it.
    connect(device, &PDevice::imageChanged, this, [this] { m_began = m_now(); });
    connect(device, &PDevice::modeChanged, this, &PExposureCountdown::restart);
    if (const PDeviceProperty* const property =
            PDeviceRoles::property(*device, PRole::ExposureTime))
        connect(property, &PDeviceProperty::valueChanged, this,
                &PExposureCountdown::followExposureTime);
}

void PExposureCountdown::restart() {
    m_began = m_now();
    m_exposure = m_device.isNull() ? microseconds(0) : readExposure(*m_device);
}

/// A different time restarts the exposure; the same one does not.
void PExposureCountdown::followExposureTime() {
    if (!m_device.isNull() && readExposure(*m_device) != m_exposure)
        restart();
}

void PExposureCountdown::setRunning(bool running) {
    if (running && !m_isRunning)
        restart();
    m_isRunning = running;
}

bool PExposureCountdown::isExposing() const {
    if (m_device.isNull() || m_device->isGone() || !m_device->isStreaming())
        return false;
    return !PCaptureMode::isTriggered(*m_device) ||
           (m_isRunning && !PCaptureMode::isTriggeredFromOutside(*m_device));
}

std::optional<std::chrono::seconds> PExposureCountdown::left() const {
    if (!isExposing())
        return std::nullopt;
    const microseconds exposure = readExposure(*m_device);
    if (exposure < shortestToWaitFor)
        return std::nullopt;
    const auto left = std::chrono::ceil<std::chrono::seconds>(m_began + exposure - m_now());
    return std::max(left, std::chrono::seconds(0));
}

#include "moc_PExposureCountdown.cpp"
