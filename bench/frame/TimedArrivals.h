// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <vector>

/// The times that things take from a thread like the SDK's to the main thread, 1000 of them a
/// second. They arrive in the order in which they were sent.
class TimedArrivals {
public:
    /// For this number of things.
    explicit TimedArrivals(int count);

    /// Calls `sendOne` once for each, on a thread of its own, while the main thread runs its event
    /// loop. Returns when all have arrived. Main thread.
    void send(const std::function<void()>& sendOne);
    /// To be called when the next one arrives. Main thread.
    void arrived();

    /// The time that this share of them, from 0 to 1, does not exceed, in microseconds. Throws
    /// std::runtime_error if not all arrived.
    double findQuantileUs(double share) const;

private:
    using Clock = std::chrono::steady_clock;

    std::vector<Clock::time_point> m_sent;
    std::vector<Clock::time_point> m_arrived;
};
