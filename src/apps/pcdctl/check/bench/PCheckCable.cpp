// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckCable.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <PCd/device/PDeviceRegister.h>

#include <algorithm>
#include <utility>

namespace {

constexpr std::chrono::seconds driverTime(3); // it may wait until a burst of events has ended
constexpr std::chrono::seconds userTime(60);

bool hasPlugMethod(const PDeviceRegister& deviceRegister) {
    return deviceRegister.metaObject()->indexOfMethod("setPlugged(bool)") >= 0;
}

} // namespace

PCheckCable::PCheckCable(Simulated simulated)
    : m_simulated(std::move(simulated)) {
}

PStatus PCheckCable::plug(PDeviceRegister& deviceRegister, bool in) const {
    if (hasPlugMethod(deviceRegister)) {
        // Queued on this thread: a driver learns of a cable from the event loop too, and only there
        // are the devices that it removes deleted.
        QMetaObject::invokeMethod(&deviceRegister, "setPlugged", Qt::QueuedConnection,
                                  Q_ARG(bool, in));
        return PStatus::Ok;
    }
    if (m_simulated)
        return m_simulated(in);
    PCtlOutput::printMessage(in ? u"Now plug the camera in again (within 60 s)."_qs
                                : u"Now unplug the camera (within 60 s)."_qs);
    return PStatus::Ok;
}

bool PCheckCable::isAutomatic(const PDeviceRegister& deviceRegister) const {
    return m_simulated || hasPlugMethod(deviceRegister);
}

std::chrono::milliseconds PCheckCable::noticeTime(const PDeviceRegister& deviceRegister,
                                                  std::chrono::milliseconds atLeast) const {
    const std::chrono::milliseconds usual = isAutomatic(deviceRegister) ? driverTime : userTime;
    return std::max(usual, atLeast);
}
