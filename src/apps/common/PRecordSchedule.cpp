// SPDX-License-Identifier: MIT
#include <apps/common/PRecordSchedule.h>

#include <algorithm>

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
