// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PFirstRate.h>

#include <algorithm>

namespace {

// The first frame is kept back until then. Some cameras send the first frames faster than the
// others, so the median of a few intervals is needed; a slow camera is not waited for.
constexpr std::chrono::milliseconds longEnough(500);
constexpr std::size_t framesEnough = 7;

} // namespace

void PFirstRate::add(TimePoint arrived) {
    if (!isKnown())
        m_arrivals.push_back(arrived);
}

bool PFirstRate::isKnown() const {
    return m_arrivals.size() >= framesEnough ||
           (m_arrivals.size() >= 2 && m_arrivals.back() - m_arrivals.front() >= longEnough);
}

std::optional<double> PFirstRate::rate() const {
    std::vector<double> intervals;
    for (std::size_t i = 1; i < m_arrivals.size(); ++i)
        intervals.push_back(
            std::chrono::duration<double>(m_arrivals[i] - m_arrivals[i - 1]).count());
    if (intervals.empty())
        return std::nullopt;
    const auto middle = intervals.begin() + std::ptrdiff_t(intervals.size() / 2);
    std::nth_element(intervals.begin(), middle, intervals.end());
    return *middle > 0 ? std::optional(1 / *middle) : std::nullopt;
}
