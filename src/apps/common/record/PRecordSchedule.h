// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>
#include <optional>

/// Which frames of a stream are recorded: all, or for a time-lapse one each interval, until a
/// number or a time is reached. Uses only the frames' times of arrival. One thread.
class PRecordSchedule {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    /// Which frames are requested; without any end, all until end() is called.
    struct Plan {
        std::optional<quint64> frames;    ///< the number; at least 1
        std::optional<Duration> duration; ///< from the first frame on
        std::optional<Duration> interval; ///< of a time-lapse; none: every frame
    };

    explicit PRecordSchedule(const Plan& plan)
        : m_plan(plan) {}

    /// True if a frame that arrived then is to be recorded: the first one; then, with an interval,
    /// the one nearest to each multiple of it. An interval without a frame is skipped.
    bool claim(TimePoint arrived);

    /// True when no later frame will be recorded.
    bool isOver(TimePoint now) const;

    /// The number of frames claimed so far, and the planned number, if there is one.
    quint64 claimed() const { return m_claimed; }
    std::optional<quint64> frames() const { return m_plan.frames; }
    /// The share done, from 0 to 1; nothing without a planned end.
    std::optional<double> share(TimePoint now) const;
    /// The time until the last frame of the plan is due, as far as that is known: by the plan, or
    /// if that has no times by the pace of the frames so far. Nothing without a planned end.
    std::optional<Duration> timeLeft(TimePoint now) const;

private:
    bool isDue(TimePoint arrived);
    Duration since(TimePoint now) const;
    std::optional<Duration> framesLeft(TimePoint now) const;
    Duration slotsLeft(TimePoint now, quint64 missing) const;
    std::optional<Duration> paceLeft(TimePoint now, quint64 missing) const;

    Plan m_plan;
    quint64 m_claimed = 0;
    std::optional<TimePoint> m_first;
    TimePoint m_previous; ///< frame, claimed or not
    Duration::rep m_lastSlot = 0;
};
