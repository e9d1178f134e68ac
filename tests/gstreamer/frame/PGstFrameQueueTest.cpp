// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstFrameQueue.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using Item = PGstFrameQueue::Item;

PDeviceFrame makeNumbered(quint64 number) {
    auto stamp = std::make_shared<PFrameStamp>();
    stamp->sequence = number;
    PDeviceFrame frame;
    frame.image.create(4, 4, PDIP::ColorFormat::Gray);
    frame.stamp = stamp;
    return frame;
}

class PGstFrameQueueTest : public testing::Test {
protected:
    PGstFrameQueueTest() {
        queue.setCapacity(2);
        queue.begin();
    }
    void add(quint64 number) { queue.takeFrame(makeNumbered(number), PFrameSink::Kind::Live); }

    PGstFrameQueue queue;
};

} // namespace

TEST_F(PGstFrameQueueTest, frames_come_in_their_order) {
    add(1);
    add(2);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 1U);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 2U);
    EXPECT_EQ(queue.counts().delivered, 2U);
    EXPECT_EQ(queue.counts().dropped, 0U);
}

TEST_F(PGstFrameQueueTest, the_oldest_are_dropped_and_counted_once) {
    for (quint64 number = 1; number <= 5; ++number)
        add(number);
    const auto first = queue.take();
    EXPECT_EQ(first->frame.stamp->sequence, 4U);
    EXPECT_EQ(first->dropped, 3U);
    EXPECT_EQ(queue.take()->dropped, 0U);
    EXPECT_EQ(queue.counts().dropped, 3U);
}

TEST_F(PGstFrameQueueTest, events_keep_their_place_and_are_not_dropped) {
    add(1);
    queue.report(Item::Kind::Unplugged, u"gone"_qs);
    add(2);
    add(3);
    EXPECT_EQ(queue.take()->kind, Item::Kind::Unplugged);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 2U);
}

TEST_F(PGstFrameQueueTest, only_live_frames_are_taken_and_only_after_begin) {
    queue.takeFrame(makeNumbered(1), PFrameSink::Kind::Snapshot);
    add(2);
    queue.end();
    add(3);
    queue.begin();
    add(4);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 4U);
}

TEST_F(PGstFrameQueueTest, the_end_drops_frames_and_nothing_else) {
    add(1);
    queue.report(Item::Kind::Warning, u"refused"_qs);
    add(2);
    queue.report(Item::Kind::Unplugged, u"gone"_qs);
    queue.end();
    EXPECT_EQ(queue.take()->kind, Item::Kind::Warning);
    EXPECT_EQ(queue.take()->kind, Item::Kind::Unplugged);
    queue.begin();
    add(3);
    add(4);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 3U);
}

TEST_F(PGstFrameQueueTest, cleared_it_has_nothing_and_accepts_no_frames) {
    add(1);
    queue.report(Item::Kind::Failed, u"lost"_qs);
    queue.clear();
    add(2);
    queue.begin();
    add(3);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 3U);
}

TEST_F(PGstFrameQueueTest, flushing_ends_a_wait) {
    std::thread flush([this] { queue.setFlushing(true); });
    EXPECT_FALSE(queue.take());
    flush.join();
    queue.setFlushing(false);
    add(1);
    EXPECT_TRUE(queue.take());
}

TEST_F(PGstFrameQueueTest, a_smaller_capacity_holds_for_the_next_frame) {
    add(1);
    add(2);
    queue.setCapacity(0); // which is 1
    add(3);
    EXPECT_EQ(queue.take()->frame.stamp->sequence, 3U);
    EXPECT_EQ(queue.counts().dropped, 2U);
}

TEST_F(PGstFrameQueueTest, each_frame_has_one_place_in_the_counts) {
    const auto numbers = [this] {
        const PGstFrameQueue::Counts counts = queue.counts();
        return std::vector<quint64>{counts.arrived, counts.delivered, counts.dropped,
                                    counts.discarded, counts.waiting};
    };
    for (quint64 number = 1; number <= 5; ++number)
        add(number);
    queue.take();
    add(6);
    EXPECT_EQ(numbers(), (std::vector<quint64>{6, 1, 3, 0, 2}));
    queue.end();
    add(7); // nobody wants it
    EXPECT_EQ(numbers(), (std::vector<quint64>{6, 1, 3, 2, 0}));
    queue.begin();
    add(8);
    queue.clear();
    EXPECT_EQ(numbers(), (std::vector<quint64>{1, 0, 0, 1, 0}));
}
