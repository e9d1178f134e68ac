// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <PCore/work/PWorkBudget.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// Does work in order on threads of its own, with a limit on the waiting work. Adding work never
/// blocks. Any thread, except for stop() and the destructor.
///
/// To shut down, the owner calls stop() or destroys the queue while everything that its work uses
/// still exists: make it the last member. Waiting work is done first; to skip it, call discard()
/// before.
class PCD_EXPORT PWorkQueue {
public:
    /// Does the work and returns the result. An exception thrown by it becomes a failure with its
    /// text.
    using Work = std::function<PStatus()>;
    /// Receives the result, on the thread of the work, after its cost was given back. An exception
    /// thrown by it is logged.
    using Done = std::function<void(const PStatus& result)>;

    /// `limit`: on the cost of the work that waits or is being done. With several threads, work
    /// begins in order but may end in another order.
    explicit PWorkQueue(std::size_t limit, int threads = 1);
    /// Shares the limit with other queues.
    explicit PWorkQueue(std::shared_ptr<PWorkBudget> budget, int threads = 1);
    /// Calls stop().
    ~PWorkQueue();

    /// Adds work, with its cost in the unit of the limit. Returns false, without effect, if that
    /// exceeds the limit, or after stop(). A queue that holds nothing accepts work of any cost.
    bool push(std::size_t cost, Work work, Done done = {});
    /// Drops the waiting work; work in progress continues. Returns the number of dropped items,
    /// whose Done will not be called.
    std::size_t discard();

    /// Waits until no work is left and the last Done has returned, or until the timeout. True if
    /// nothing is left. Must not be called from work of this queue.
    bool waitUntilIdle(std::optional<std::chrono::milliseconds> timeout = std::nullopt);
    /// Accepts no more work, does the waiting work, and ends the threads. Calling it again does
    /// nothing. One thread at a time, and none of the queue's own, which are joined.
    void stop();

    /// The cost of the work that waits or is being done.
    std::size_t cost() const;

private:
    struct Item {
        std::size_t cost = 0;
        Work work;
        Done done;
    };

    void run();
    std::optional<Item> next();
    void carryOut(Item item);
    void giveBack(std::size_t cost);
    void leave();
    bool isIdle() const { return m_waiting.empty() && m_running == 0; }

    const std::shared_ptr<PWorkBudget> m_budget; // its lock is taken after m_mutex

    mutable std::mutex m_mutex; // guards all below but m_threads; never held while work runs
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<Item> m_waiting;
    std::size_t m_cost = 0;
    int m_running = 0;
    bool m_stopping = false;
    std::vector<std::thread> m_threads;
};
