// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

struct PDeviceSettings;
class PSettingNames;

/// How a frame was exposed, as far as its settings contain it. A value.
struct PFrameExposure {
    std::optional<double> milliseconds;
    std::optional<double> gain; ///< a factor: 1.2 is 120 %
    bool automatic = false;     ///< the camera chose time and gain by itself
    QString binning;            ///< "2x2" …; empty if unknown

    /// Reads the settings "autoexpottime" (microseconds), "autoexpogain" (percent) and
    /// "autoexponeable", or without those the record "extexposure", and "binning". Any thread.
    static PFrameExposure of(const PDeviceSettings& settings, const PSettingNames& names);

    /// "158.647 ms (automatic)", or "(manual)"; empty if the time is not known.
    QString timeText() const;
    /// "120 %"; empty if the gain is not known.
    QString gainText() const;
    /// "158.647 ms": to the microsecond.
    static QString textOf(double milliseconds);
};
