// SPDX-License-Identifier: MIT
#pragma once

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

/// Work that is done in its order on threads of the queue, with a bound on what waits. Who adds
/// work never waits for it. Any thread, except for stop() and the destructor.
///
/// To shut down, the owner calls stop() or destroys the queue while all that its work uses is
/// still there: make it the last member. What waits is then done first; for an earlier end call
/// discard() before.
class PWorkQueue {
public:
    /// Does the work and returns how it went. An exception that leaves it is a failure with its
    /// text.
    using Work = std::function<PStatus()>;
    /// Receives the result, on the thread of the work, once its cost is free again. An exception
    /// that leaves it is logged.
    using Done = std::function<void(const PStatus& result)>;

    /// `limit`: of the cost of the work that waits or is being done. With several threads work is
    /// begun in its order, but may end in another.
    explicit PWorkQueue(std::size_t limit, int threads = 1);
    /// Shares the limit with other queues.
    explicit PWorkQueue(std::shared_ptr<PWorkBudget> budget, int threads = 1);
    /// As stop().
    ~PWorkQueue();

    /// Adds work, with its cost in the unit of the limit. False, without an effect, if that is over
    /// the limit, or after stop(). A queue that holds nothing takes work of any cost.
    bool push(std::size_t cost, Work work, Done done = {});
    /// Drops the work that waits; what was begun goes on. Returns how many items were dropped,
    /// whose Done will not be called.
    std::size_t discard();

    /// Waits until no work is left and the last Done has returned, or until the timeout. True if
    /// nothing is left. Not from work of this queue.
    bool waitUntilIdle(std::optional<std::chrono::milliseconds> timeout = std::nullopt);
    /// Takes no more work, does what waits, and ends the threads. Calling it again does nothing.
    /// Only one thread at a time, and none of the queue's own: those are joined.
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
