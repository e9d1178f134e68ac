// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <optional>

class PDevice;

/// When a long exposure will bring its picture. It starts with an exposure, and follows the camera
/// from there. The device's thread; the camera is not asked.
class PExposureCountdown : public QObject {
    Q_OBJECT

public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// Starts with an exposure of this device, whose property list must have been built. Another
    /// clock than the system's is for tests.
    explicit PExposureCountdown(PDevice* device, Now now = &Clock::now);

    /// An exposure starts now, as when the stream is started.
    void restart();

    /// Whether a run of triggered pictures is under way: between runs nothing is exposed.
    void setRunning(bool running);

    /// Seconds until the next picture, rounded up, and 0 from when it is due. Nothing where the
    /// exposure is shorter than about a second, none runs, or a signal from outside starts it.
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
