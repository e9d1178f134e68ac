// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameWriteQueue.h>

#include <apps/common/TestFrames.h>

#include <gtest/gtest.h>

#include <future>
#include <new>

namespace {

TEST(WriteQueue, shares_its_memory_with_others_but_for_one_frame_each) {
    const auto frame = testFrame(1, std::chrono::milliseconds(0));
    const auto memory = std::make_shared<PWorkBudget>(3 * frame.image.dataSize());
    std::promise<void> open;
    const std::shared_future<void> gate = open.get_future().share();
    const auto write = [gate](const PDeviceFrame&, quint64) {
        gate.wait();
        return PStatus(PStatus::Ok);
    };
    PFrameWriteQueue first(write, 1, memory);
    PFrameWriteQueue second(write, 1, memory);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(first.push(frame));
    EXPECT_TRUE(second.push(frame)); // it has no frame yet
    EXPECT_FALSE(second.push(frame));
    EXPECT_FALSE(first.push(frame));
    open.set_value();
    ASSERT_TRUE(first.waitUntilIdle(std::chrono::seconds(60)));
    ASSERT_TRUE(second.waitUntilIdle(std::chrono::seconds(60)));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(second.push(frame));
    EXPECT_EQ(first.state().written, 3U);
    EXPECT_EQ(first.state().refused, 1U);
}

TEST(WriteQueue, limits_the_number_of_small_frames_by_what_each_costs_at_least) {
    const auto frame = testFrame(1, std::chrono::milliseconds(0));
    std::promise<void> open;
    const std::shared_future<void> gate = open.get_future().share();
    PFrameWriteQueue queue(
        [gate](const PDeviceFrame&, quint64) {
            gate.wait();
            return PStatus(PStatus::Ok);
        },
        1, std::make_shared<PWorkBudget>(1'000'000), 500'000);
    EXPECT_TRUE(queue.push(frame));
    EXPECT_TRUE(queue.push(frame));
    EXPECT_FALSE(queue.push(frame));
    open.set_value();
    EXPECT_TRUE(queue.waitUntilIdle(std::chrono::seconds(60)));
}

TEST(WriteQueue, names_the_frame_for_which_there_was_no_memory) {
    PFrameWriteQueue queue([](const PDeviceFrame&, quint64) -> PStatus { throw std::bad_alloc(); },
                           1, std::make_shared<PWorkBudget>(10'000'000), 1);
    EXPECT_TRUE(queue.push(testFrame(1, std::chrono::milliseconds(0))));
    EXPECT_TRUE(queue.waitUntilIdle(std::chrono::seconds(60)));
    EXPECT_EQ(queue.state().error, u"cannot save frame 1: there is not enough memory"_qs);
}

TEST(WriteQueue, gives_the_memory_back_of_what_is_not_written_after_a_failure) {
    const auto frame = testFrame(1, std::chrono::milliseconds(0));
    const auto memory = std::make_shared<PWorkBudget>(3 * frame.image.dataSize());
    std::promise<void> open;
    const std::shared_future<void> gate = open.get_future().share();
    PFrameWriteQueue failing(
        [gate](const PDeviceFrame&, quint64) {
            gate.wait();
            return PStatus::failure(u"no room left"_qs);
        },
        1, memory);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(failing.push(frame));
    open.set_value();
    ASSERT_TRUE(failing.waitUntilIdle(std::chrono::seconds(60)));
    EXPECT_EQ(failing.state().failed, 3U);
    EXPECT_TRUE(memory->take(3 * frame.image.dataSize(), 1));
}

} // namespace
