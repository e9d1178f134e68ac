// SPDX-License-Identifier: MIT
#include <PCore/work/PWorkQueue.h>

#include <PCore/PFaultStack.h>
#include <PCore/work/PGuardedCall.h>

#include <utility>

// Not a QThreadPool: that is unbounded, and passes work on under a lock inside Qt, which the thread
// sanitizer cannot see.

PWorkQueue::PWorkQueue(std::size_t limit, int threads)
    : PWorkQueue(std::make_shared<PWorkBudget>(limit), threads) {
}

PWorkQueue::PWorkQueue(std::shared_ptr<PWorkBudget> budget, int threads)
    : m_budget(std::move(budget)) {
    for (int i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { run(); });
}

PWorkQueue::~PWorkQueue() {
    stop();
}

bool PWorkQueue::push(std::size_t cost, Work work, Done done) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_stopping || !m_budget->take(cost, m_cost))
            return false;
        m_cost += cost;
        m_waiting.push_back({cost, std::move(work), std::move(done)});
    }
    m_wake.notify_one();
    return true;
}

std::size_t PWorkQueue::discard() {
    std::deque<Item> discarded; // destroyed without the lock: its destructors may do anything
    {
        const std::lock_guard lock(m_mutex);
        discarded.swap(m_waiting);
        for (const Item& item : discarded)
            giveBack(item.cost);
        if (isIdle())
            m_idle.notify_all();
    }
    return discarded.size();
}

bool PWorkQueue::waitUntilIdle(std::optional<std::chrono::milliseconds> timeout) {
    const auto idle = [this] { return isIdle(); };
    std::unique_lock lock(m_mutex);
    if (timeout)
        return m_idle.wait_for(lock, *timeout, idle);
    m_idle.wait(lock, idle);
    return true;
}

void PWorkQueue::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
    m_threads.clear();
}

std::size_t PWorkQueue::cost() const {
    const std::lock_guard lock(m_mutex);
    return m_cost;
}

/// The body of a thread.
void PWorkQueue::run() {
    PFaultStack::giveThread();
    while (std::optional<Item> item = next()) {
        carryOut(std::move(*item));
        leave();
    }
}

/// Waits for work; returns nothing once the queue is stopped and empty.
std::optional<PWorkQueue::Item> PWorkQueue::next() {
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_stopping || !m_waiting.empty(); });
    if (m_waiting.empty())
        return std::nullopt;
    std::optional<Item> item(std::move(m_waiting.front()));
    m_waiting.pop_front();
    ++m_running;
    return item;
}

void PWorkQueue::carryOut(Item item) {
    PStatus result = PGuardedCall::status(item.work);
    item.work = nullptr; // destroyed before its cost is given back
    {
        const std::lock_guard lock(m_mutex);
        giveBack(item.cost);
    }
    if (item.done)
        PGuardedCall::logged([&] { item.done(result); });
}

/// Called under the lock.
void PWorkQueue::giveBack(std::size_t cost) {
    m_cost -= cost;
    m_budget->giveBack(cost);
}

/// Called when an item is done and what it held is destroyed.
void PWorkQueue::leave() {
    const std::lock_guard lock(m_mutex);
    --m_running;
    if (isIdle())
        m_idle.notify_all();
}
