// SPDX-License-Identifier: MIT
#include <PDip/PBufferPool.h>
#include <PDip/PImage.h>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cstring>
#include <deque>
#include <vector>

// The memory that a running stream needs per frame: none. Nothing is measured with a clock: the
// system counts page faults, and the pool counts allocations.

namespace {

const PImageHeader frame(2720, 1824, PDIP::ColorFormat::Bgr); // 15 MB, 3,634 pages

long minorFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

/// A consumer that stays a few frames behind, as a live view and a recorder do.
class Stream {
public:
    Stream()
        : m_camera(frame.dataSize(), 0x55) {}

    void deliver(int frames) {
        for (int i = 0; i < frames; ++i) {
            PImage image;
            ASSERT_TRUE(image.create(frame));
            ASSERT_TRUE(image.set(m_camera.data(), frame));
            m_waiting.push_back(image);
            if (m_waiting.size() > 2)
                m_waiting.pop_front();
        }
    }

private:
    std::vector<unsigned char> m_camera;
    std::deque<PImage> m_waiting;
};

} // namespace

TEST(SteadyStream, takes_no_memory_from_the_system_for_a_frame) {
    Stream stream;
    stream.deliver(4);
    const auto before = PBufferPool::instance().statistics();
    stream.deliver(20);
    const auto after = PBufferPool::instance().statistics();
    EXPECT_EQ(after.allocations, before.allocations);
    EXPECT_EQ(after.reuses, before.reuses + 20);
    EXPECT_EQ(after.usedBytes, before.usedBytes);
}

TEST(SteadyStream, causes_no_page_fault_for_a_frame) {
    Stream stream;
    stream.deliver(4);
    const long before = minorFaults();
    stream.deliver(20);
    EXPECT_LT((minorFaults() - before) / 20, 100);
}

TEST(SteadyStream, would_cause_hundreds_of_page_faults_with_fresh_memory) {
    // Shows that the count above detects page faults, even where most of the pages are huge.
    PBufferPool::instance().trim();
    PBufferPool fresh(0);
    const auto buffer = fresh.acquire(frame.dataSize());
    ASSERT_TRUE(buffer);
    const long before = minorFaults();
    std::memset(buffer.get(), 1, frame.dataSize());
    EXPECT_GT(minorFaults() - before, 500);
}
