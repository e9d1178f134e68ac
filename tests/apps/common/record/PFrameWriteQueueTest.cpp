// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameWriteQueue.h>

#include <apps/common/TestFrames.h>

#include <support/RowName.h>

#include <gtest/gtest.h>

#include <future>

namespace {

constexpr std::uint64_t mebibyte = 1 << 20;

struct LimitRow {
    const char* name;
    std::uint64_t memory; ///< MiB
    std::uint64_t limit;  ///< MiB
};

class WriteQueueLimit : public testing::TestWithParam<LimitRow> {};

TEST_P(WriteQueueLimit, follows_the_memory) {
    EXPECT_EQ(PFrameWriteQueue::byteLimitFor(GetParam().memory * mebibyte),
              GetParam().limit * mebibyte);
}

INSTANTIATE_TEST_SUITE_P(Rows, WriteQueueLimit,
                         testing::Values(LimitRow{"of_a_small_machine_is_a_quarter", 2048, 512},
                                         LimitRow{"of_8_gib_is_2_gib", 8192, 2048},
                                         LimitRow{"of_a_large_machine_is_2_gib", 65536, 2048},
                                         LimitRow{"of_very_little_memory_is_some_frames", 128, 64},
                                         LimitRow{"of_unknown_memory_is_some_frames", 0, 64}),
                         RowName());

TEST(WriteQueue, the_limit_of_this_machine_is_more_than_the_least) {
    EXPECT_GT(PFrameWriteQueue::defaultByteLimit(), 64 * mebibyte); // its memory is known
    EXPECT_LE(PFrameWriteQueue::defaultByteLimit(), 2048 * mebibyte);
}

TEST(WriteQueue, shares_its_memory_with_others_but_for_one_frame_each) {
    const auto frame = testFrame(1, std::chrono::milliseconds(0));
    const auto memory = std::make_shared<PWriteMemory>(3 * frame.image.dataSize());
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
    EXPECT_TRUE(second.push(frame)); // it has none yet
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

TEST(WriteQueue, gives_the_memory_back_of_what_is_not_written_after_a_failure) {
    const auto frame = testFrame(1, std::chrono::milliseconds(0));
    const auto memory = std::make_shared<PWriteMemory>(3 * frame.image.dataSize());
    std::promise<void> open;
    const std::shared_future<void> gate = open.get_future().share();
    PFrameWriteQueue failing(
        [gate](const PDeviceFrame&, quint64) {
            gate.wait();
            return PStatus::failure(QStringLiteral("no room left"));
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
