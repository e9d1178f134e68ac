// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PSettingNames.h>

#include <QString>

#include <optional>

class PDeviceRoles;
struct PDeviceSettings;

/// How a frame was exposed, as far as the roles of its settings allow. A value type.
struct PFrameExposure {
    std::optional<double> milliseconds;
    std::optional<double> gain; ///< a factor: 1.2 is 120 %
    bool automatic = false;     ///< the camera chose time and gain
    QString binning;            ///< "2x2" …; empty if unknown

    /// Reads the plain settings of time, gain and automatic exposure, or without those the fields
    /// of a composite one, and the binning. Any thread.
    static PFrameExposure of(const PDeviceSettings& settings, const PSettingNames& names);
    /// The same for the settings of a frame or a device.
    static PFrameExposure of(const PDeviceRoles& roles, const PSettingNames& names = {});

    /// "158.647 ms (automatic)", or "(manual)"; empty if the time is not known.
    QString timeText() const;
    /// "120 %"; empty if the gain is not known.
    QString gainText() const;
    /// "158.647 ms": to the microsecond.
    static QString toText(double milliseconds);
};
