// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <vector>

/// The frame rate of a stream, as far as its first frames show it. One thread at a time.
class PFirstRate {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// A frame arrived; without effect once the rate isKnown().
    void add(TimePoint arrived);
    /// True when enough frames have arrived: seven, or fewer in half a second, but two at least.
    bool isKnown() const;
    /// Frames per second, from the median of the intervals so far; nothing without any, or if that
    /// is zero.
    std::optional<double> rate() const;

private:
    std::vector<TimePoint> m_arrivals;
};
