// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>
#include <toupcam/sim/timing/PSimPacer.h>

#include <optional>

/// Triggered exposures: who asked for how many, and when the one under way began. Guarded by its
/// owner's lock.
class PSimTrigger {
public:
    using Time = PSimPacer::Clock::time_point;

    /// Values of the TRIGGER option.
    enum class Mode { Video, Software, External };

    explicit PSimTrigger(const PSimExternalTriggerSpec& source);

    /// Forgets everything; an external source sends its first signal one period after `now`.
    void begin(Mode mode, Time now);
    Mode mode() const { return m_mode; }

    /// Software trigger: `count` frames in place of those still to come, 0xffff without end, 0
    /// none.
    void request(unsigned count, Time now);
    /// A signal at the external input. False if it is missed: the camera is exposing, or does not
    /// listen.
    bool signal(Time when);
    /// Lets the external source send what it has sent up to `now`.
    void advance(Time now);

    /// When the exposure under way began.
    std::optional<Time> exposingSince() const { return m_since; }
    /// Lets it have begun no earlier than this: the time it takes has become shorter.
    void beginNoEarlier(Time limit);
    /// The exposure under way has given its frame; the next one of a run begins now.
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
