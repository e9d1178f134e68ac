// SPDX-License-Identifier: MIT
#include <apps/common/record/PRecordSchedule.h>

#include <algorithm>

namespace {

using Duration = PRecordSchedule::Duration;

/// A multiple of a time; at most a century, twice which still fits into a clock.
Duration times(quint64 count, Duration time) {
    const Duration most = std::chrono::hours(24 * 365 * 100);
    return time > Duration::zero() && count > quint64(most / time) ? most
                                                                   : Duration::rep(count) * time;
}

} // namespace

bool PRecordSchedule::claim(TimePoint arrived) {
    if (isOver(arrived))
        return false;
    const bool isFirst = !m_first;
    if (isFirst)
        m_first = arrived;
    const bool wanted = isFirst || isDue(arrived);
    m_previous = arrived;
    m_claimed += wanted ? 1 : 0;
    return wanted;
}

/// Slot n is the n-th multiple of the interval.
bool PRecordSchedule::isDue(TimePoint arrived) {
    if (!m_plan.interval)
        return true;
    // A frame up to half a frame period early is the nearest one. Waiting for the next would take
    // every other frame where the interval is the frame period and frames jitter.
    const Duration early = std::min(arrived - m_previous, *m_plan.interval) / 2;
    const Duration::rep slot = (since(arrived) + early) / *m_plan.interval;
    if (slot <= m_lastSlot || (m_plan.duration && slot * *m_plan.interval >= *m_plan.duration))
        return false;
    m_lastSlot = slot;
    return true;
}

PRecordSchedule::Duration PRecordSchedule::since(TimePoint now) const {
    return m_first ? now - *m_first : Duration::zero();
}

bool PRecordSchedule::isOver(TimePoint now) const {
    const bool all = m_plan.frames && m_claimed >= *m_plan.frames;
    return all || (m_first && m_plan.duration && since(now) >= *m_plan.duration);
}

std::optional<double> PRecordSchedule::share(TimePoint now) const {
    using Seconds = std::chrono::duration<double>;
    std::optional<double> share;
    if (m_plan.frames)
        share = double(m_claimed) / double(*m_plan.frames);
    if (m_plan.duration)
        share = std::max(share.value_or(0), Seconds(since(now)) / Seconds(*m_plan.duration));
    return share ? std::optional(std::clamp(*share, 0.0, 1.0)) : std::nullopt;
}

std::optional<PRecordSchedule::Duration> PRecordSchedule::timeLeft(TimePoint now) const {
    std::optional<Duration> left = framesLeft(now);
    if (m_plan.duration) {
        const Duration ofTime = std::max(*m_plan.duration - since(now), Duration::zero());
        left = std::min(left.value_or(ofTime), ofTime);
    }
    return left;
}

/// The time until the last of a number of frames is due.
std::optional<PRecordSchedule::Duration> PRecordSchedule::framesLeft(TimePoint now) const {
    if (!m_plan.frames)
        return std::nullopt;
    if (m_claimed >= *m_plan.frames)
        return Duration::zero();
    const quint64 missing = *m_plan.frames - m_claimed;
    return m_plan.interval ? slotsLeft(now, missing) : paceLeft(now, missing);
}

/// The next frame is due in the slot after the last one that was taken, or now in a later one.
PRecordSchedule::Duration PRecordSchedule::slotsLeft(TimePoint now, quint64 missing) const {
    const Duration::rep slotNow = since(now) / *m_plan.interval;
    const Duration::rep next = m_first ? std::max(m_lastSlot + 1, slotNow) : 0;
    const Duration end = next * *m_plan.interval + times(missing - 1, *m_plan.interval);
    return std::max(end - since(now), Duration::zero());
}

/// The next frame is due after the mean time between frames, or now if it is late.
std::optional<PRecordSchedule::Duration> PRecordSchedule::paceLeft(TimePoint now,
                                                                   quint64 missing) const {
    if (m_claimed < 2)
        return std::nullopt;
    const Duration pace = (m_previous - *m_first) / Duration::rep(m_claimed - 1);
    const Duration untilNext = std::max(m_previous + pace - now, Duration::zero());
    return untilNext + times(missing - 1, pace);
}
