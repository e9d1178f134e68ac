// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <cstddef>
#include <mutex>

/// The limit on the total cost of work waiting in one or several PWorkQueues, in bytes, items or
/// another unit. Any thread.
class PCD_EXPORT PWorkBudget {
public:
    explicit PWorkBudget(std::size_t limit)
        : m_limit(limit) {}

    /// Takes the cost for a queue that already holds `held`. False if too little is left, except
    /// for a queue that holds nothing, so that every queue can make progress.
    bool take(std::size_t cost, std::size_t held);
    /// Gives back a cost that take() granted.
    void giveBack(std::size_t cost);

    std::size_t limit() const { return m_limit; }

private:
    const std::size_t m_limit;
    std::mutex m_mutex; // used by several queues, each on several threads
    std::size_t m_taken = 0;
};
