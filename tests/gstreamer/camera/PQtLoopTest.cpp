// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PQtLoop.h>

#include <QCoreApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

TEST(PQtLoop, work_runs_on_a_thread_with_an_application) {
    std::thread::id here = std::this_thread::get_id();
    const auto there = PQtLoop::ask<std::thread::id>([] { return std::this_thread::get_id(); });
    ASSERT_TRUE(there);
    EXPECT_NE(*there, here);
    ASSERT_NE(QCoreApplication::instance(), nullptr);
    const auto again = PQtLoop::ask<std::thread::id>([] { return std::this_thread::get_id(); });
    EXPECT_EQ(*again, *there);
}

TEST(PQtLoop, many_threads_get_one_application) {
    std::atomic<int> calls = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&calls] { PQtLoop::call([&calls] { ++calls; }); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(calls, 8);
}

TEST(PQtLoop, a_call_from_qt_s_thread_runs_at_once) {
    const auto nested =
        PQtLoop::ask<bool>([] { return PQtLoop::ask<bool>([] { return true; }).value_or(false); });
    EXPECT_TRUE(nested.value_or(false));
}

TEST(PQtLoop, work_that_did_not_begin_in_time_is_not_done) {
    const auto isHeld = std::make_shared<std::atomic<bool>>(true);
    const auto done = std::make_shared<std::atomic<int>>(0);
    PQtLoop::post([isHeld] {
        while (*isHeld)
            std::this_thread::sleep_for(1ms);
    });
    EXPECT_FALSE(PQtLoop::call([done] { ++*done; }, 10ms));
    *isHeld = false;
    PQtLoop::call([] {});
    EXPECT_EQ(*done, 0);
}

TEST(PQtLoop, work_that_did_not_end_in_time_has_no_result) {
    const auto isHeld = std::make_shared<std::atomic<bool>>(true);
    const auto hasBegun = std::make_shared<std::atomic<bool>>(false);
    std::thread release([isHeld, hasBegun] {
        while (!*hasBegun)
            std::this_thread::sleep_for(1ms);
        std::this_thread::sleep_for(200ms);
        *isHeld = false;
    });
    const auto result = PQtLoop::ask<int>(
        [isHeld, hasBegun] {
            *hasBegun = true;
            while (*isHeld)
                std::this_thread::sleep_for(1ms);
            return 1;
        },
        50ms);
    release.join();
    EXPECT_FALSE(result);
    EXPECT_EQ(PQtLoop::ask<int>([] { return 2; }), 2);
}

TEST(PQtLoop, posted_work_runs_in_its_order) {
    const auto order = std::make_shared<std::vector<int>>();
    for (int i = 0; i < 3; ++i)
        PQtLoop::post([order, i] { order->push_back(i); });
    PQtLoop::call([] {});
    EXPECT_EQ(*order, (std::vector<int>{0, 1, 2}));
}

TEST(PQtLoop, an_exception_ends_the_work_and_no_more) {
    EXPECT_TRUE(PQtLoop::call([] { throw std::runtime_error("too early"); }));
    EXPECT_EQ(PQtLoop::ask<int>([] { return 3; }), 3);
}

TEST(PQtLoop, the_farewell_comes_at_exit) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            PQtLoop::call([] {});
            PQtLoop::setFarewell([] { fputs("goodbye", stderr); });
            std::exit(0);
        },
        testing::ExitedWithCode(0), "goodbye");
}
