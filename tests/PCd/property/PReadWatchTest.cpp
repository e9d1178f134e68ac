// SPDX-License-Identifier: MIT
#include <PCd/property/PReadWatch.h>

#include <gtest/gtest.h>

#include <thread>

TEST(PReadWatch, notices_a_failed_reading_after_it_was_made) {
    const PReadWatch watch;
    EXPECT_FALSE(watch.hasFailed());
    PReadWatch::reportFailure();
    EXPECT_TRUE(watch.hasFailed());
}

TEST(PReadWatch, does_not_notice_an_earlier_one) {
    PReadWatch::reportFailure();
    EXPECT_FALSE(PReadWatch().hasFailed());
}

TEST(PReadWatch, an_outer_one_notices_what_an_inner_one_does) {
    const PReadWatch outer;
    {
        const PReadWatch inner;
        PReadWatch::reportFailure();
        EXPECT_TRUE(inner.hasFailed());
    }
    const PReadWatch later;
    EXPECT_TRUE(outer.hasFailed());
    EXPECT_FALSE(later.hasFailed());
}

TEST(PReadWatch, does_not_notice_readings_of_other_threads) {
    const PReadWatch watch;
    std::thread([] { PReadWatch::reportFailure(); }).join();
    EXPECT_FALSE(watch.hasFailed());
}
