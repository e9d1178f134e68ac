// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameHandoff.h>

#include <PCd/frame/FrameHelpers.h>

#include <gtest/gtest.h>

using Kind = PFrameSink::Kind;

namespace {

PFrameHandoff::Entry makeEntry(quint64 sequence, Kind kind = Kind::Live) {
    auto stamp = std::make_shared<PFrameStamp>();
    stamp->sequence = sequence;
    PFrameHandoff::Entry entry;
    entry.frame = {smallImage(), stamp};
    entry.kind = kind;
    return entry;
}

quint64 readSequence(const std::optional<PFrameHandoff::Entry>& entry) {
    return entry && entry->frame.stamp ? entry->frame.stamp->sequence : 0;
}

} // namespace

TEST(PFrameHandoff, gives_nothing_when_nothing_waits) {
    PFrameHandoff handoff(1000);
    EXPECT_EQ(handoff.size(), 0u);
    EXPECT_FALSE(handoff.take().has_value());
}

TEST(PFrameHandoff, gives_entries_in_the_order_they_came) {
    PFrameHandoff handoff(1000);
    EXPECT_TRUE(handoff.push(makeEntry(1)));
    EXPECT_TRUE(handoff.push(makeEntry(2, Kind::Snapshot)));
    EXPECT_TRUE(handoff.push(makeEntry(3)));
    EXPECT_EQ(handoff.size(), 3u);
    EXPECT_EQ(readSequence(handoff.take()), 1u);
    const auto second = handoff.take();
    EXPECT_EQ(readSequence(second), 2u);
    EXPECT_EQ(second->kind, Kind::Snapshot);
    EXPECT_EQ(readSequence(handoff.take()), 3u);
    EXPECT_EQ(handoff.size(), 0u);
}

TEST(PFrameHandoff, takes_live_frames_up_to_the_limit_to_the_byte) {
    PFrameHandoff handoff(2 * smallImageBytes);
    EXPECT_TRUE(handoff.push(makeEntry(1)));
    EXPECT_TRUE(handoff.push(makeEntry(2)));
    EXPECT_FALSE(handoff.push(makeEntry(3)));
    EXPECT_EQ(handoff.size(), 2u);
}

TEST(PFrameHandoff, leaves_out_a_frame_that_would_exceed_the_limit_by_a_byte) {
    PFrameHandoff handoff(2 * smallImageBytes - 1);
    EXPECT_TRUE(handoff.push(makeEntry(1)));
    EXPECT_FALSE(handoff.push(makeEntry(2)));
}

TEST(PFrameHandoff, has_room_again_for_every_frame_that_is_taken) {
    PFrameHandoff handoff(2 * smallImageBytes);
    handoff.push(makeEntry(1));
    handoff.push(makeEntry(2));
    handoff.take();
    EXPECT_TRUE(handoff.push(makeEntry(3)));
    EXPECT_FALSE(handoff.push(makeEntry(4)));
}

TEST(PFrameHandoff, takes_one_frame_of_any_size) {
    PFrameHandoff handoff(0);
    EXPECT_TRUE(handoff.push(makeEntry(1)));
    EXPECT_FALSE(handoff.push(makeEntry(2)));
    handoff.take();
    EXPECT_TRUE(handoff.push(makeEntry(3)));
}

TEST(PFrameHandoff, takes_snapshots_beyond_the_limit_and_does_not_count_them) {
    PFrameHandoff handoff(smallImageBytes);
    for (quint64 i = 1; i <= 4; ++i)
        EXPECT_TRUE(handoff.push(makeEntry(i, Kind::Snapshot)));
    EXPECT_TRUE(handoff.push(makeEntry(5)));
    EXPECT_TRUE(handoff.push(makeEntry(6, Kind::Snapshot)));
    EXPECT_FALSE(handoff.push(makeEntry(7)));
    EXPECT_EQ(handoff.size(), 6u);
}

TEST(PFrameHandoff, keeps_to_a_limit_that_is_changed) {
    PFrameHandoff handoff(smallImageBytes);
    handoff.push(makeEntry(1));
    ASSERT_FALSE(handoff.push(makeEntry(2)));
    handoff.setByteLimit(2 * smallImageBytes);
    EXPECT_TRUE(handoff.push(makeEntry(3)));
    EXPECT_FALSE(handoff.push(makeEntry(4)));
}

TEST(PFrameHandoff, requests_one_wake_until_it_has_arrived) {
    PFrameHandoff handoff(1000);
    ASSERT_TRUE(handoff.push(makeEntry(1)));
    ASSERT_TRUE(handoff.push(makeEntry(2)));
    EXPECT_TRUE(handoff.claimWake());
    EXPECT_FALSE(handoff.claimWake());
    EXPECT_EQ(handoff.wakeArrived(), 2u);
    EXPECT_TRUE(handoff.claimWake());
}

TEST(PFrameHandoff, passes_every_entry_of_several_threads_on_once_and_in_order) {
    constexpr quint64 perThread = 500;
    PFrameHandoff handoff(std::size_t(1) << 30);
    const auto bring = [&handoff](quint64 first) {
        for (quint64 i = 0; i < perThread; ++i)
            handoff.push(makeEntry(first + i));
    };
    std::thread one(bring, 1);
    std::thread other(bring, 10001);
    quint64 nextOfOne = 1;
    quint64 nextOfOther = 10001;
    while (nextOfOne + nextOfOther < 10002 + 2 * perThread) {
        const quint64 sequence = readSequence(handoff.take());
        if (sequence == 0)
            std::this_thread::yield();
        else if (sequence == nextOfOne)
            ++nextOfOne;
        else if (sequence == nextOfOther)
            ++nextOfOther;
        else
            break; // out of order
    }
    one.join();
    other.join();
    EXPECT_EQ(nextOfOne, 1 + perThread);
    EXPECT_EQ(nextOfOther, 10001 + perThread);
    EXPECT_EQ(handoff.size(), 0u);
}
