// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PMinMaxRange.h>
#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QVariant>

#include <chrono>
#include <optional>

class PDevice;
class PDeviceProperty;

/// Triggered capture of a camera that supports it: a composite property with the roles of the
/// trigger, and a method to fire. The device's thread; the device must outlive this.
class PTriggerControl {
    Q_DECLARE_TR_FUNCTIONS(PTriggerControl)

public:
    /// What starts an exposure.
    enum class Source { Software, External };
    /// A run that only the next fire() ends.
    static constexpr int endless = 0xffff;

    explicit PTriggerControl(PDevice& device);

    /// Puts the camera into trigger mode, for sequences of `frames` frames; without an exposure
    /// time the camera's setting for triggered frames holds. Fails if the camera has no such mode
    /// or time, or does not report its settings.
    PStatus prepare(Source source, std::optional<std::chrono::microseconds> exposure, int frames);

    /// Begins a software-triggered run of this number of frames; 0 ends a run. Fails if the camera
    /// refuses.
    PStatus fire(int frames);

    /// Exposure time of a triggered frame, as set.
    std::chrono::microseconds exposure() const;

private:
    PStatus checkExposure(const QVariant& value) const;
    double toMilliseconds(const QVariant& value) const;

    PDeviceProperty* m_property;
    std::optional<PMinMaxRange<double>> m_timeRange; ///< of exposure times, milliseconds
};
