// SPDX-License-Identifier: MIT
#include <PCore/work/PWorkQueue.h>

#include <PCore/work/QtMessages.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <stdexcept>

namespace {

using namespace std::chrono_literals;

/// The first work of a queue blocks until open(), so that everything after it waits.
class PWorkQueueTest : public testing::Test {
protected:
    /// Pushes the work that blocks; returns when it has begun.
    void block(PWorkQueue& queue, std::size_t cost = 1) {
        const auto begun = std::make_shared<std::promise<void>>();
        ASSERT_TRUE(queue.push(cost, [begun, gate = m_gate] {
            begun->set_value();
            gate.wait();
            return PStatus(PStatus::Ok);
        }));
        begun->get_future().wait();
    }
    void open() { m_open.set_value(); }

    PWorkQueue::Work note(int number) {
        return [this, number] {
            const std::lock_guard lock(m_mutex);
            m_done.push_back(number);
            return PStatus(PStatus::Ok);
        };
    }
    std::vector<int> done() {
        const std::lock_guard lock(m_mutex);
        return m_done;
    }

private:
    std::promise<void> m_open;
    const std::shared_future<void> m_gate = m_open.get_future().share();
    std::mutex m_mutex;
    std::vector<int> m_done;
};

TEST_F(PWorkQueueTest, does_the_work_in_its_order_on_another_thread) {
    PWorkQueue queue(100);
    std::thread::id thread;
    block(queue); // so that all of it waits at once
    queue.push(1, [&] {
        thread = std::this_thread::get_id();
        return PStatus(PStatus::Ok);
    });
    std::vector<int> expected;
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(queue.push(1, note(i)));
        expected.push_back(i);
    }
    open();
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(done(), expected);
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(PWorkQueueTest, refuses_what_is_over_its_limit_and_takes_it_when_there_is_room_again) {
    PWorkQueue queue(10);
    block(queue, 6);
    EXPECT_TRUE(queue.push(4, note(1)));
    EXPECT_FALSE(queue.push(1, note(2)));
    EXPECT_EQ(queue.cost(), 10U);
    open();
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(queue.cost(), 0U);
    EXPECT_TRUE(queue.push(1, note(3)));
    queue.stop();
    EXPECT_EQ(done(), std::vector<int>({1, 3}));
}

TEST_F(PWorkQueueTest, takes_work_over_its_limit_if_it_holds_nothing) {
    PWorkQueue queue(10);
    EXPECT_TRUE(queue.push(1000, note(1)));
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(done(), std::vector<int>{1});
}

TEST_F(PWorkQueueTest, queues_may_share_a_limit) {
    const auto budget = std::make_shared<PWorkBudget>(10);
    PWorkQueue first(budget);
    PWorkQueue second(budget);
    block(first, 9);
    EXPECT_TRUE(second.push(2, note(1))); // the queue is empty
    EXPECT_TRUE(second.waitUntilIdle(longestWait()));
    EXPECT_FALSE(first.push(2, note(2)));
    open();
    ASSERT_TRUE(first.waitUntilIdle(longestWait()));
    EXPECT_TRUE(budget->take(10, 1));
}

TEST_F(PWorkQueueTest, hands_on_how_the_work_went_when_its_cost_is_free_again) {
    PWorkQueue queue(1);
    std::vector<QString> reasons;
    std::size_t cost = 1;
    const auto note = [&](const PStatus& result) {
        reasons.push_back(result.reason());
        cost = queue.cost();
    };
    queue.push(
        1, [] { return PStatus(PStatus::Ok); }, note);
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(cost, 0U);
    queue.push(
        1, [] { return PStatus::failure(u"no room"_qs); }, note);
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(reasons, std::vector<QString>({QString(), u"no room"_qs}));
}

TEST_F(PWorkQueueTest, releases_what_the_work_holds_before_its_cost_is_free) {
    PWorkQueue queue(1);
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool wasFree = false;
    queue.push(
        1, [held = std::move(held)] { return PStatus(PStatus::Ok); },
        [&](const PStatus&) { wasFree = watched.expired(); });
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_TRUE(wasFree);
}

TEST_F(PWorkQueueTest, an_exception_in_the_work_is_its_result_and_the_next_work_is_done) {
    PWorkQueue queue(10);
    QString reason;
    queue.push(
        1, []() -> PStatus { throw std::runtime_error("no room"); },
        [&](const PStatus& result) { reason = result.reason(); });
    queue.push(1, note(1));
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(reason, u"no room"_qs);
    EXPECT_EQ(done(), std::vector<int>{1});
}

TEST_F(PWorkQueueTest, an_exception_after_the_work_is_logged_and_the_next_work_is_done) {
    const QtMessages messages;
    PWorkQueue queue(10);
    queue.push(
        1, [] { return PStatus(PStatus::Ok); },
        [](const PStatus&) { throw std::runtime_error("no room"); });
    queue.push(1, note(1));
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(messages.texts(), QStringList{u"An exception left a call: no room"_qs});
    EXPECT_EQ(done(), std::vector<int>{1});
}

TEST_F(PWorkQueueTest, stopped_while_it_is_full_it_does_what_waits_and_takes_no_more) {
    PWorkQueue queue(3);
    block(queue);
    EXPECT_TRUE(queue.push(1, note(1)));
    EXPECT_TRUE(queue.push(1, note(2)));
    EXPECT_FALSE(queue.push(1, note(3)));
    std::thread stopping([&] { queue.stop(); });
    // Work that costs nothing fits into a full queue, but a stopped one does not take it.
    EXPECT_TRUE(waitUntil([&] { return !queue.push(0, note(0)); }));
    open();
    stopping.join();
    std::vector<int> others = done();
    others.erase(std::remove(others.begin(), others.end(), 0), others.end());
    EXPECT_EQ(others, std::vector<int>({1, 2}));
    EXPECT_FALSE(queue.push(1, note(4)));
    queue.stop(); // no effect
    EXPECT_EQ(queue.cost(), 0U);
}

TEST_F(PWorkQueueTest, its_destructor_does_what_waits) {
    {
        PWorkQueue queue(100);
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(queue.push(1, note(i)));
    }
    EXPECT_EQ(done().size(), 20U);
}

TEST_F(PWorkQueueTest, drops_what_waits_but_not_what_was_begun) {
    const auto budget = std::make_shared<PWorkBudget>(3);
    PWorkQueue queue(budget);
    block(queue);
    bool reported = false;
    queue.push(1, note(1), [&](const PStatus&) { reported = true; });
    queue.push(1, note(2));
    EXPECT_EQ(queue.discard(), 2U);
    EXPECT_EQ(queue.cost(), 1U);
    EXPECT_FALSE(queue.waitUntilIdle(0ms));
    open();
    ASSERT_TRUE(queue.waitUntilIdle(longestWait()));
    EXPECT_EQ(done(), std::vector<int>());
    EXPECT_FALSE(reported);
    EXPECT_EQ(queue.discard(), 0U);
    EXPECT_TRUE(budget->take(3, 1));
}

TEST_F(PWorkQueueTest, several_threads_do_several_works_at_a_time) {
    PWorkQueue queue(10, 2);
    block(queue);
    queue.push(1, note(1));
    EXPECT_TRUE(waitUntil([this] { return !done().empty(); }));
    EXPECT_FALSE(queue.waitUntilIdle(0ms)); // the first item is still being done
    open();
    queue.waitUntilIdle();
    EXPECT_EQ(queue.cost(), 0U);
}

TEST_F(PWorkQueueTest, many_threads_may_push_discard_and_wait_at_once) {
    std::atomic<std::size_t> carriedOut = 0;
    std::atomic<std::size_t> pushed = 0;
    std::atomic<std::size_t> dropped = 0;
    PWorkQueue queue(8, 2);
    const auto user = [&] {
        for (int i = 0; i < 500; ++i) {
            pushed += queue.push(1, [&] {
                ++carriedOut;
                return PStatus(PStatus::Ok);
            });
            if (i % 50 == 0)
                dropped += queue.discard();
            if (i % 100 == 0)
                queue.waitUntilIdle(1ms);
        }
    };
    std::vector<std::thread> users;
    for (int i = 0; i < 3; ++i)
        users.emplace_back(user);
    for (std::thread& one : users)
        one.join();
    queue.stop();
    EXPECT_EQ(pushed, carriedOut + dropped);
    EXPECT_EQ(queue.cost(), 0U);
}

} // namespace
