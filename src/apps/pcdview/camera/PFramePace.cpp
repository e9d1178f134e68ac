// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PFramePace.h>

#include <algorithm>

namespace {

constexpr std::chrono::seconds secondOfFrames{1}; // the counter's window

} // namespace

void PFramePace::tick(Clock::time_point when) {
    m_counter.tick(when);
    if (!m_first)
        m_first = when;
    m_recent.push_back(when);
    while (m_recent.front() < when - secondOfFrames)
        m_recent.pop_front();
}

double PFramePace::framesPerSecond(Clock::time_point now) const {
    const double rate = m_counter.fps(now);
    if (!m_first || *m_first > now - secondOfFrames)
        return rate; // the stream is new: its first second is not over
    const auto first = std::lower_bound(m_recent.begin(), m_recent.end(), now - secondOfFrames);
    // A steady stream has at most one interval more in a second than it has frames there.
    return std::min(rate, double(m_recent.end() - first + 1));
}

void PFramePace::reset() {
    m_counter.reset();
    m_recent.clear();
    m_first.reset();
}
