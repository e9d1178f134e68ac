// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>
#include <toupcam/sim/timing/PSimPacer.h>

#include <optional>

/// Triggered exposures: how many are still to come, and when the current one began. Any thread may
/// use it under its owner's lock.
class PSimTrigger {
public:
    using Time = PSimPacer::Clock::time_point;

    /// Values of the TRIGGER option.
    enum class Mode { Video, Software, External };

    explicit PSimTrigger(const PSimExternalTriggerSpec& source);

    /// Clears everything; an external source sends its first signal one period after `now`.
    void begin(Mode mode, Time now);
    Mode mode() const { return m_mode; }

    /// Software trigger: replaces the frames still to come by `count`, 0xffff meaning without end,
    /// 0 none.
    void request(unsigned count, Time now);
    /// A signal at the external input. False if it is missed: the camera is exposing, or in another
    /// mode.
    bool signal(Time when);
    /// Adds the signals that the external source has sent up to `now`.
    void advance(Time now);

    /// When the current exposure began.
    std::optional<Time> exposingSince() const { return m_since; }
    /// Moves the beginning of the current exposure to this time if it was earlier: the exposure
    /// time has become shorter.
    void beginNoEarlier(Time limit);
    /// The current exposure has produced its frame; the next one of a run begins now.
    void taken(Time now);

    /// When the external source sends its next signal.
    std::optional<Time> nextSignal() const;
    /// Signals missed since the beginning.
    std::uint64_t missed() const { return m_missed; }

private:
    const PSimExternalTriggerSpec m_source;
    Mode m_mode = Mode::Video;
    unsigned m_pending = 0;
    std::optional<Time> m_since;
    Time m_nextSignal;
    std::uint64_t m_sent = 0;
    std::uint64_t m_missed = 0;
};
