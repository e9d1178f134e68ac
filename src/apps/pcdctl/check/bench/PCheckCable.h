// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <chrono>
#include <functional>

class PDeviceRegister;

/// How the camera under examination is unplugged and plugged in again: by the method
/// `setPlugged(bool)` of its register if there is one, by the simulated SDK, or by the user. The
/// main thread.
class PCheckCable {
public:
    /// Unplugs a simulated camera, or plugs it in; fails, with the reason, if that is impossible.
    using Simulated = std::function<PStatus(bool in)>;

    /// Without a function: for a camera that is not simulated.
    explicit PCheckCable(Simulated simulated = {});

    /// Begins to unplug the camera of this register, or to plug it in; the driver notices it later.
    /// Fails, with the reason, if there is no way to do it.
    PStatus plug(PDeviceRegister& deviceRegister, bool in) const;
    /// True if plug() does not need the user.
    bool isAutomatic(const PDeviceRegister& deviceRegister) const;
    /// How long to wait after plug() until the driver must have noticed: at least this long.
    std::chrono::milliseconds noticeTime(const PDeviceRegister& deviceRegister,
                                         std::chrono::milliseconds atLeast) const;

private:
    Simulated m_simulated;
};
