// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <optional>

class PDevice;

/// The remaining time of a long exposure. Starts with an exposure, and is updated by the device's
/// signals. The device's thread; the camera is not read.
class PExposureCountdown : public QObject {
    Q_OBJECT

public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// Starts with an exposure of this device, whose property list must have been built. Tests may
    /// pass their own clock.
    explicit PExposureCountdown(PDevice* device, Now now = &Clock::now);

    /// An exposure starts now, as when the stream is started.
    void restart();

    /// Whether a triggered run is in progress: between runs nothing is exposed.
    void setRunning(bool running);

    /// Seconds until the next picture, rounded up, and 0 once it is due. Nothing if the exposure is
    /// shorter than about a second, none is in progress, or an external signal starts it.
    std::optional<std::chrono::seconds> left() const;

private:
    bool isExposing() const;
    void followExposureTime();

    QPointer<PDevice> m_device;
    Now m_now;
    Clock::time_point m_began;
    std::chrono::microseconds m_exposure{0}; ///< of the last restart()
    bool m_isRunning = false;
};
