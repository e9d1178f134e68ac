// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PFpsCounter.h>

#include <deque>
#include <optional>

/// The frame rate to show: that of the last second, and after a pause no more than has arrived in
/// it. The counter alone extrapolates from the first frames, which after a stall come in a burst.
/// One thread at a time.
class PFramePace {
public:
    using Clock = PFpsCounter::Clock;

    /// A frame arrived at `when`, not earlier than the one before.
    void tick(Clock::time_point when);
    /// The frames per second at this time.
    double framesPerSecond(Clock::time_point now) const;
    /// Forgets all frames: the stream was stopped or started.
    void reset();

private:
    PFpsCounter m_counter;
    std::deque<Clock::time_point> m_recent; ///< arrivals in the second before the newest
    std::optional<Clock::time_point> m_first;
};
