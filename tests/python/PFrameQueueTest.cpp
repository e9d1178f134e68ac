// SPDX-License-Identifier: MIT
#include <python/frame/PFrameQueue.h>

#include <support/WaitUntil.h>

#include <PCd/frame/PFrameStamp.h>

#include <gtest/gtest.h>

#include <poll.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace {

using Kind = PFrameSink::Kind;

PDeviceFrame makeFrame(
    quint64 sequence, const std::function<void()>& onRelease = [] {}) {
    auto* const stamp = new PFrameStamp;
    stamp->sequence = sequence;
    PDeviceFrame frame;
    frame.stamp = std::shared_ptr<const PFrameStamp>(stamp, [onRelease](const PFrameStamp* kept) {
        delete kept;
        onRelease();
    });
    return frame;
}

bool isReadable(const PFrameQueue& queue) {
    pollfd file{queue.descriptor(), POLLIN, 0};
    return poll(&file, 1, 0) == 1;
}

TEST(PFrameQueue, frames_come_out_in_the_order_in_which_they_went_in) {
    PFrameQueue queue(Kind::Live, 3, std::nullopt);
    for (quint64 sequence = 1; sequence <= 3; ++sequence)
        EXPECT_TRUE(queue.takeFrame(makeFrame(sequence), Kind::Live));
    for (quint64 sequence = 1; sequence <= 3; ++sequence)
        EXPECT_EQ(queue.take()->stamp->sequence, sequence);
    EXPECT_FALSE(queue.take());
}

TEST(PFrameQueue, a_full_queue_refuses_frames_counts_them_and_keeps_the_older_ones) {
    PFrameQueue queue(Kind::Live, 2, std::nullopt);
    EXPECT_TRUE(queue.takeFrame(makeFrame(1), Kind::Live));
    EXPECT_TRUE(queue.takeFrame(makeFrame(2), Kind::Live));
    int released = 0;
    EXPECT_FALSE(queue.takeFrame(makeFrame(3, [&] { ++released; }), Kind::Live));
    EXPECT_EQ(released, 1) << "a frame that is refused costs no memory";
    EXPECT_EQ(queue.take()->stamp->sequence, 1U);
    EXPECT_TRUE(queue.takeFrame(makeFrame(4), Kind::Live));
    const PFrameQueue::Counts counts = queue.counts();
    EXPECT_EQ(counts.accepted, 3U);
    EXPECT_EQ(counts.dropped, 1U);
    EXPECT_EQ(counts.waiting, 2U);
}

TEST(PFrameQueue, frames_of_the_other_kind_and_after_the_last_one_are_nobodys_loss) {
    PFrameQueue queue(Kind::Live, 1, 1);
    EXPECT_TRUE(queue.takeFrame(makeFrame(1), Kind::Snapshot));
    EXPECT_TRUE(queue.takeFrame(makeFrame(2), Kind::Live));
    EXPECT_TRUE(queue.takeFrame(makeFrame(3), Kind::Live));
    EXPECT_EQ(queue.counts().accepted, 1U);
    EXPECT_EQ(queue.counts().dropped, 0U);
    EXPECT_EQ(queue.take()->stamp->sequence, 2U);
    EXPECT_TRUE(queue.takeFrame(makeFrame(4), Kind::Live));
    EXPECT_FALSE(queue.take());
}

TEST(PFrameQueue, its_file_can_be_read_exactly_while_frames_wait) {
    PFrameQueue queue(Kind::Live, 5, std::nullopt);
    EXPECT_FALSE(isReadable(queue));
    queue.takeFrame(makeFrame(1), Kind::Live);
    queue.takeFrame(makeFrame(2), Kind::Live);
    EXPECT_TRUE(isReadable(queue));
    queue.take();
    EXPECT_TRUE(isReadable(queue));
    queue.take();
    EXPECT_FALSE(isReadable(queue));
    queue.takeFrame(makeFrame(3), Kind::Live);
    EXPECT_TRUE(isReadable(queue));
    queue.close();
    EXPECT_FALSE(isReadable(queue));
}

TEST(PFrameQueue, a_closed_queue_has_released_its_frames_and_takes_no_more) {
    PFrameQueue queue(Kind::Live, 1, std::nullopt);
    int released = 0;
    queue.takeFrame(makeFrame(1, [&] { ++released; }), Kind::Live);
    queue.close();
    EXPECT_EQ(released, 1);
    EXPECT_TRUE(queue.takeFrame(makeFrame(2, [&] { ++released; }), Kind::Live));
    EXPECT_EQ(released, 2);
    EXPECT_EQ(queue.counts().waiting, 0U);
    EXPECT_EQ(queue.counts().dropped, 0U);
    queue.close();
}

TEST(PFrameQueue, while_it_releases_frames_the_cameras_thread_does_not_wait) {
    PFrameQueue queue(Kind::Live, 1, std::nullopt);
    std::future<PFrameQueue::Counts> other;
    bool isFree = false;
    const auto look = [&] {
        other = std::async(std::launch::async, [&queue] { return queue.counts(); });
        isFree = other.wait_for(longestWait()) == std::future_status::ready;
    };
    queue.takeFrame(makeFrame(1, look), Kind::Live);
    queue.close();
    EXPECT_TRUE(isFree);
}

TEST(PFrameQueue, no_frame_is_lost_between_threads) {
    constexpr quint64 perThread = 2000;
    PFrameQueue queue(Kind::Live, 4, std::nullopt);
    std::atomic<quint64> refused{0};
    std::atomic<int> running{2};
    const auto deliver = [&] {
        for (quint64 sequence = 1; sequence <= perThread; ++sequence)
            refused += queue.takeFrame(makeFrame(sequence), Kind::Live) ? 0U : 1U;
        --running;
    };
    std::thread first(deliver);
    std::thread second(deliver);
    quint64 taken = 0;
    while (running > 0 || queue.counts().waiting > 0) {
        EXPECT_LE(queue.counts().waiting, 4U);
        if (queue.take())
            ++taken;
        else
            std::this_thread::yield();
    }
    first.join();
    second.join();
    EXPECT_EQ(taken + refused, 2 * perThread);
    EXPECT_EQ(queue.counts().accepted, taken);
    EXPECT_EQ(queue.counts().dropped, refused);
    EXPECT_FALSE(isReadable(queue));
}

TEST(PFrameQueue, it_may_be_closed_while_frames_come) {
    PFrameQueue queue(Kind::Live, 4, std::nullopt);
    std::atomic<bool> stop{false};
    std::atomic<int> kept{0};
    std::thread camera([&] {
        while (!stop) {
            ++kept;
            queue.takeFrame(makeFrame(1, [&] { --kept; }), Kind::Live);
        }
    });
    EXPECT_TRUE(waitUntil([&] { return queue.counts().dropped > 0; }));
    queue.close();
    stop = true;
    camera.join();
    EXPECT_EQ(kept, 0);
    EXPECT_FALSE(isReadable(queue));
}

} // namespace
