// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <gst/gst.h>

#include <chrono>
#include <mutex>
#include <optional>
#include <utility>

/// The times of frames on the clock of a pipeline, and the interval between them. Any thread.
class PGstTimes {
public:
    using Clock = std::chrono::steady_clock;

    /// Forgets the frames before.
    void reset();

    /// The running time at which a frame arrived: that of the pipeline's clock at `now`, less the
    /// frame's age then. Never before the start of the pipeline, nor before an earlier frame.
    /// `sequence` is the frame's number.
    GstClockTime toRunningTime(Clock::time_point arrived, quint64 sequence, Clock::time_point now,
                               GstClockTime runningTimeNow);

    /// The mean interval between the first frames of the camera, dropped ones included; nothing
    /// before there are enough of them.
    std::optional<GstClockTime> interval() const;
    /// Their number: single frames may come soon after each other.
    static constexpr quint64 measuredFrames = 8;

private:
    void measure(Clock::time_point arrived, quint64 sequence);

    mutable std::mutex m_mutex; ///< guards all below, between frames and the latency query
    std::optional<std::pair<Clock::time_point, quint64>> m_first;
    std::optional<GstClockTime> m_interval;
    GstClockTime m_last = 0;
};
