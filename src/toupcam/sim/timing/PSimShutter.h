// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/timing/PSimTrigger.h>

/// The timing that decides when frames fall due.
struct PSimPace {
    /// The time between frames, and from a trigger to its frame; at least the exposure time.
    std::chrono::nanoseconds period{0};
    PSimTrigger::Mode mode = PSimTrigger::Mode::Video;
};

/// Starts one frame after the other: at the camera's rate, or when triggered. Any thread may use it
/// under its owner's lock.
class PSimShutter {
public:
    using Time = PSimPacer::Clock::time_point;

    explicit PSimShutter(const PSimExternalTriggerSpec& source);

    /// Starts from zero; the first frame falls due one period after `now`, or when triggered.
    void start(Time now, const PSimPace& pace);
    /// The settings have changed. A current exposure that is now too long ends at once; one in
    /// another mode is cancelled.
    void change(Time now, const PSimPace& pace);
    bool isTriggered() const { return m_pace.mode != PSimTrigger::Mode::Video; }
    PSimTrigger& trigger() { return m_trigger; }
    const PSimTrigger& trigger() const { return m_trigger; }

    /// Whether a frame has fallen due.
    bool isDue(Time now);
    /// When to check again, unless a trigger comes first; none if only a trigger can start a frame.
    std::optional<Time> nextTime() const;
    /// Counts what has fallen due: the newest is taken, others were lost. False if none has.
    bool take(Time now);
    /// Counts one frame that is produced now, due or not.
    void takeNow(Time now) { m_pacer.produceNow(now); }
    /// Counts what has fallen due and is lost.
    void settle(Time now);

    /// Frames counted, including those that have fallen due up to `now`.
    std::uint64_t produced() const { return m_pacer.produced(); }
    std::uint64_t producedBy(Time now) const;
    /// Microseconds from the start to the newest frame counted.
    std::uint64_t microseconds() const { return m_pacer.microseconds(); }

private:
    std::optional<Time> due() const;

    PSimPacer m_pacer;
    PSimTrigger m_trigger;
    PSimPace m_pace;
};
