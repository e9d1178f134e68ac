// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

/// The clock of a stream: when the next frame falls due and how many have. Frames that fall due
/// and are not taken are lost but counted. Any thread may use it under its owner's lock.
class PSimPacer {
public:
    using Clock = std::chrono::steady_clock;

    /// Starts again from zero; the first frame falls due one period after `now`.
    void start(Clock::time_point now) {
        m_start = now;
        m_last = now;
        m_produced = 0;
    }

    /// When the next frame falls due.
    Clock::time_point due(std::chrono::nanoseconds period) const { return m_last + period; }

    /// How many frames have fallen due up to `now`, those already taken included.
    std::uint64_t producedBy(Clock::time_point now, std::chrono::nanoseconds period) const {
        return m_produced + fallen(now, period);
    }

    /// Counts all frames that have fallen due and not been taken.
    void settle(Clock::time_point now, std::chrono::nanoseconds period) {
        const std::uint64_t count = fallen(now, period);
        m_produced += count;
        m_last += std::int64_t(count) * period;
    }

    /// Counts one frame that is produced now, due or not.
    void produceNow(Clock::time_point now) {
        ++m_produced;
        m_last = now;
    }

    /// Restarts the period: the next frame falls due one period after `now`.
    void pauseUntil(Clock::time_point now) { m_last = now; }

    /// Changes the period. A due frame stays due, and those before it are counted; if the next
    /// frame would have been due long ago with the new period, it falls due now.
    void changePeriod(Clock::time_point now, std::chrono::nanoseconds old,
                      std::chrono::nanoseconds next) {
        const std::uint64_t waiting = fallen(now, old);
        const std::uint64_t missed = waiting > 1 ? waiting - 1 : 0;
        m_produced += missed;
        m_last += std::int64_t(missed) * old;
        m_last = std::max(m_last, now - next);
    }

    /// Frames counted so far.
    std::uint64_t produced() const { return m_produced; }

    /// Microseconds from the start to the newest frame counted.
    std::uint64_t microseconds() const {
        return std::uint64_t(
            std::chrono::duration_cast<std::chrono::microseconds>(m_last - m_start).count());
    }

private:
    std::uint64_t fallen(Clock::time_point now, std::chrono::nanoseconds period) const {
        return now > m_last ? std::uint64_t((now - m_last) / period) : 0;
    }

    Clock::time_point m_start;
    Clock::time_point m_last; ///< when the newest frame counted fell due
    std::uint64_t m_produced = 0;
};
