// SPDX-License-Identifier: MIT
#include <apps/common/PExposureWatch.h>

#include <PCd/PDevice.h>
#include <PCd/PDeviceProperty.h>

namespace {

constexpr std::chrono::milliseconds interval(200);

} // namespace

PExposureWatch::PExposureWatch(PDevice* device)
    : m_device(device) {
    connect(&m_timer, &QTimer::timeout, this, &PExposureWatch::read);
    m_timer.start(interval);
    read();
}

void PExposureWatch::read() {
    if (m_device.isNull() || m_device->isGone())
        return;
    // Not the composite "extexposure": its panel answers each change by sending all of it back.
    for (const char* const id :
         {"autoexpottime", "autoexpogain", "autoexponeable", "autoexpotarget"}) {
        if (PDeviceProperty* const property = m_device->getProperty(id))
            property->updateValueFromDevice();
    }
}
