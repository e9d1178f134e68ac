// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <mutex>

/// What the work that waits in one or several PWorkQueues may cost in all: bytes, items, or
/// whatever its users count. Any thread.
class PWorkBudget {
public:
    explicit PWorkBudget(std::size_t limit)
        : m_limit(limit) {}

    /// Takes the cost for a queue that holds `held` already. False if there is not enough left,
    /// unless the queue holds nothing: each queue can then always make progress.
    bool take(std::size_t cost, std::size_t held);
    /// Returns what take() has given.
    void giveBack(std::size_t cost);

    std::size_t limit() const { return m_limit; }

private:
    const std::size_t m_limit;
    std::mutex m_mutex; // several queues take and give back, each on several threads
    std::size_t m_taken = 0;
};
