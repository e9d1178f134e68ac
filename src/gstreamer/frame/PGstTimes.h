// SPDX-License-Identifier: MIT
#pragma once

#include <gst/gst.h>

#include <chrono>
#include <mutex>
#include <optional>

/// The times of frames on the clock of a pipeline, and the interval between them. Any thread.
class PGstTimes {
public:
    using Clock = std::chrono::steady_clock;

    /// Forgets the frames before.
    void reset();

    /// The running time at which a frame arrived: that of the pipeline's clock at `now`, less the
    /// frame's age then. Never before the start of the pipeline, nor before an earlier frame.
    GstClockTime toRunningTime(Clock::time_point arrived, Clock::time_point now,
                               GstClockTime runningTimeNow);

    /// The shortest interval so far between two frames; nothing before the second one.
    std::optional<GstClockTime> interval() const;

private:
    mutable std::mutex m_mutex; ///< guards all below, between frames and the latency query
    std::optional<Clock::time_point> m_lastArrival;
    std::optional<GstClockTime> m_interval;
    GstClockTime m_last = 0;
};
