// SPDX-License-Identifier: MIT
#include <PCore/call/PCallWatchdog.h>

#include <PCore/call/PNamedCall.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <optional>

using namespace std::chrono_literals;

namespace {

/// What a watchdog has reported so far.
class PCallWatchdogTest : public testing::Test {
protected:
    PCallWatchdog::Report report() {
        return [this](const PCallWatchdog::Call& call) {
            const std::lock_guard lock(m_mutex);
            m_calls.append(call);
        };
    }
    QList<PCallWatchdog::Call> calls() {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    bool waitForCalls(qsizetype count) {
        return waitUntil([&] { return calls().size() >= count; });
    }

    /// A thread in a call that lasts until release().
    void hang(int argument) {
        m_thread = std::thread([this, argument] {
            static constexpr PNamedCall<int(int)> named("Camera_hang");
            const auto inProgress = named.begin(argument);
            m_released.get_future().wait();
        });
    }
    void release() {
        m_released.set_value();
        m_thread.join();
    }

private:
    std::mutex m_mutex; // guards m_calls, which the watchdog's thread adds to
    QList<PCallWatchdog::Call> m_calls;
    std::promise<void> m_released;
    std::thread m_thread;
};

} // namespace

TEST_F(PCallWatchdogTest, a_call_that_does_not_return_is_reported_with_its_arguments) {
    const PCallWatchdog watchdog(report(), 20ms);
    hang(42);
    EXPECT_TRUE(waitForCalls(1));
    release();
    ASSERT_FALSE(calls().isEmpty());
    EXPECT_EQ(calls().first().text, u"Camera_hang(42)"_qs);
    EXPECT_GE(calls().first().time, 20ms);
    EXPECT_FALSE(calls().first().isOver);
}

TEST_F(PCallWatchdogTest, it_is_reported_again_with_longer_times_and_when_it_has_returned) {
    const PCallWatchdog watchdog(report(), 20ms);
    hang(1);
    EXPECT_TRUE(waitForCalls(3));
    release();
    ASSERT_TRUE(waitUntil([&] { return !calls().isEmpty() && calls().last().isOver; }));
    const QList<PCallWatchdog::Call> all = calls();
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [](const auto& call) { return call.isOver; }),
              1);
    for (qsizetype i = 1; i < all.size(); ++i) {
        EXPECT_EQ(all[i].text, all[0].text);
        if (!all[i].isOver) {
            EXPECT_GE(all[i].time, 2 * all[i - 1].time);
        }
    }
}

TEST_F(PCallWatchdogTest, calls_that_return_are_not_reported_however_many_there_are) {
    const PCallWatchdog watchdog(report(), 500ms);
    hang(2);
    static constexpr PNamedCall<void()> named("Camera_quick");
    EXPECT_TRUE(waitUntil([&] {
        for (int i = 0; i < 1000; ++i) {
            const auto inProgress = named.begin();
        }
        return !calls().isEmpty();
    }));
    release();
    for (const PCallWatchdog::Call& call : calls())
        EXPECT_EQ(call.text, u"Camera_hang(2)"_qs);
}

TEST_F(PCallWatchdogTest, calls_are_overdue_from_their_report_until_they_return) {
    EXPECT_TRUE(PCallWatchdog::overdueCalls().isEmpty());
    const PCallWatchdog watchdog(report(), 20ms);
    hang(3);
    EXPECT_TRUE(waitUntil([] { return !PCallWatchdog::overdueCalls().isEmpty(); }));
    const QList<PCallWatchdog::Call> overdue = PCallWatchdog::overdueCalls();
    release();
    ASSERT_EQ(overdue.size(), 1);
    EXPECT_EQ(overdue.first().text, u"Camera_hang(3)"_qs);
    EXPECT_GE(overdue.first().time, 20ms);
    EXPECT_TRUE(waitUntil([] { return PCallWatchdog::overdueCalls().isEmpty(); }));
}

TEST_F(PCallWatchdogTest, a_call_that_has_returned_is_reported_before_the_watchdog_ends) {
    std::optional<PCallWatchdog> watchdog;
    watchdog.emplace(report(), 300ms); // it looks only every 100 ms
    hang(1);
    ASSERT_TRUE(waitForCalls(1));
    release();
    watchdog.reset();
    EXPECT_TRUE(calls().last().isOver);
}

TEST_F(PCallWatchdogTest, a_watchdog_that_ends_forgets_its_calls) {
    {
        const PCallWatchdog watchdog(report(), 20ms);
        hang(4);
        EXPECT_TRUE(waitForCalls(1));
    }
    EXPECT_TRUE(PCallWatchdog::overdueCalls().isEmpty());
    release();
}
