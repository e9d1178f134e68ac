// SPDX-License-Identifier: MIT
#include <PCore/work/PPostedCalls.h>

#include <PCore/work/QtMessages.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QThread>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

TEST(PPostedCallsTest, makes_the_calls_of_another_thread_on_its_own_in_their_order) {
    PPostedCalls calls;
    std::vector<int> numbers;
    const auto note = [&numbers](int number) {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        numbers.push_back(number);
    };
    std::thread other([&] {
        for (int i = 1; i <= 3; ++i)
            calls.post([=] { note(i); });
    });
    other.join();
    EXPECT_TRUE(numbers.empty());
    ASSERT_TRUE(waitUntil([&] { return numbers.size() == 3; }));
    EXPECT_EQ(numbers, std::vector<int>({1, 2, 3}));
}

TEST(PPostedCallsTest, a_call_may_post_another) {
    PPostedCalls calls;
    bool second = false;
    calls.post([&] { calls.post([&] { second = true; }); });
    EXPECT_TRUE(waitUntil([&] { return second; }));
}

TEST(PPostedCallsTest, makes_the_waiting_calls_at_once_on_request_and_only_once) {
    PPostedCalls calls;
    int made = 0;
    calls.post([&] { ++made; });
    calls.runAll();
    EXPECT_EQ(made, 1);
    bool last = false;
    calls.post([&] { last = true; });
    ASSERT_TRUE(waitUntil([&] { return last; }));
    EXPECT_EQ(made, 1);
}

TEST(PPostedCallsTest, drops_what_waits_when_it_is_destroyed) {
    bool made = false;
    {
        PPostedCalls calls;
        calls.post([&] { made = true; });
    }
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(made);
}

TEST(PPostedCallsTest, a_call_may_destroy_it_and_the_rest_is_dropped) {
    auto calls = std::make_unique<PPostedCalls>();
    bool rest = false;
    calls->post([&] { calls.reset(); });
    calls->post([&] { rest = true; });
    ASSERT_TRUE(waitUntil([&] { return calls == nullptr; }));
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(rest);
}

TEST(PPostedCallsTest, an_exception_does_not_reach_the_event_loop) {
    const QtMessages messages;
    PPostedCalls calls;
    bool next = false;
    calls.post([] { throw std::runtime_error("no room"); });
    calls.post([&] { next = true; });
    EXPECT_TRUE(waitUntil([&] { return next; }));
    EXPECT_EQ(messages.texts(), QStringList{u"An exception left a call: no room"_qs});
}

} // namespace
