// SPDX-License-Identifier: MIT
#include <PCore/PFpsCounter.h>

#include <algorithm>

namespace {
constexpr std::chrono::seconds window{1};
} // namespace

PFpsCounter::PFpsCounter(QObject* parent)
    : QObject(parent) {
}

void PFpsCounter::tick(Clock::time_point when) {
    const std::lock_guard lock(m_mutex);
    // Two frame threads may read the clock in one order and take this lock in the other.
    m_ticks.insert(std::upper_bound(m_ticks.begin(), m_ticks.end(), when), when);
    const auto oldest = m_ticks.back() - window;
    while (m_ticks.front() < oldest)
        m_ticks.pop_front();
}

double PFpsCounter::fps(Clock::time_point now) const {
    const std::lock_guard lock(m_mutex);
    const auto first = std::lower_bound(m_ticks.begin(), m_ticks.end(), now - window);
    const auto end = std::upper_bound(first, m_ticks.end(), now);
    if (end - first < 2)
        return 0;
    const std::chrono::duration<double> span = *(end - 1) - *first;
    return span.count() > 0 ? double(end - first - 1) / span.count() : 0;
}

void PFpsCounter::reset() {
    const std::lock_guard lock(m_mutex);
    m_ticks.clear();
}

#include "moc_PFpsCounter.cpp"
