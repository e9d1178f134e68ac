// SPDX-License-Identifier: MIT
#include <view/Durations.h>

#include <algorithm>
#include <cmath>

void Durations::add(std::chrono::steady_clock::duration time) {
    m_milliseconds.push_back(std::chrono::duration<double, std::milli>(time).count());
}

double Durations::atShare(double share) const {
    if (m_milliseconds.empty())
        return 0;
    std::vector<double> sorted = m_milliseconds;
    // The nearest rank: a time that was measured, never one in between.
    const double rank = std::ceil(share * double(sorted.size()));
    const auto place = sorted.begin() + (std::max(long(rank), 1L) - 1);
    std::nth_element(sorted.begin(), place, sorted.end());
    return *place;
}
