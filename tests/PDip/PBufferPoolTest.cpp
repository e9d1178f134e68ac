// SPDX-License-Identifier: MIT
#include <PDip/PBufferPool.h>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t megabyte = std::size_t(1) << 20;
constexpr std::chrono::hours forEver{1};

/// Not in a fork of this process, which has several threads under some sanitizers.
void runDeathTestsInANewProcess() {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
}

/// The system's flags of the mapping with this byte, such as " rd wr hg"; see proc(5).
std::string readMappingFlags(const unsigned char* byte) {
    const auto address = reinterpret_cast<std::uintptr_t>(byte);
    const std::string flags = "VmFlags:";
    std::ifstream mappings("/proc/self/smaps");
    bool isIts = false;
    for (std::string line; std::getline(mappings, line);) {
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        if (std::istringstream(line) >> std::hex >> begin >> dash >> end && dash == '-')
            isIts = begin <= address && address < end;
        else if (isIts && line.compare(0, flags.size(), flags) == 0)
            return line.substr(flags.size());
    }
    return {};
}

bool hasHugePages(const unsigned char* byte) {
    return readMappingFlags(byte).find(" hg") != std::string::npos;
}

bool isZero(const unsigned char* bytes, std::size_t size) {
    return std::all_of(bytes, bytes + size, [](unsigned char byte) { return byte == 0; });
}

} // namespace

TEST(PBufferPool, hands_out_memory_that_can_be_written_from_end_to_end) {
    PBufferPool pool(64 * megabyte);
    for (const std::size_t size :
         {std::size_t(1), std::size_t(4095), std::size_t(4097), 3 * megabyte + 1}) {
        const auto buffer = pool.acquire(size);
        ASSERT_TRUE(buffer);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.get()) % 64, 0u);
        std::memset(buffer.get(), 0xAB, size);
        EXPECT_EQ(buffer.get()[size - 1], 0xAB);
    }
}

TEST(PBufferPool, returns_null_for_nothing_and_for_what_is_not_available) {
    PBufferPool pool(megabyte);
    EXPECT_FALSE(pool.acquire(0));
    EXPECT_FALSE(pool.acquire(std::size_t(1) << 61));
    EXPECT_FALSE(pool.acquire(std::size_t(1) << 62));
    EXPECT_FALSE(pool.acquire(SIZE_MAX));
    EXPECT_EQ(pool.statistics().allocations, 0u);
    EXPECT_EQ(pool.statistics().usedBytes, 0u);
}

TEST(PBufferPool, hands_a_buffer_out_again_after_it_was_released) {
    PBufferPool pool(64 * megabyte, forEver);
    auto buffer = pool.acquire(5 * megabyte);
    const auto* memory = buffer.get();
    buffer.reset();
    buffer = pool.acquire(5 * megabyte);
    EXPECT_EQ(buffer.get(), memory);
    EXPECT_EQ(pool.statistics().allocations, 1u);
    EXPECT_EQ(pool.statistics().reuses, 1u);
}

TEST(PBufferPool, never_hands_out_a_buffer_that_is_in_use) {
    PBufferPool pool(64 * megabyte, forEver);
    const auto first = pool.acquire(megabyte);
    const auto copy = first;
    const auto second = pool.acquire(megabyte);
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(pool.statistics().allocations, 2u);
}

TEST(PBufferPool, lets_nearly_equal_sizes_share_buffers_and_others_not) {
    PBufferPool pool(256 * megabyte, forEver);
    pool.acquire(60'000'000);
    pool.acquire(60'000'100);
    EXPECT_EQ(pool.statistics().reuses, 1u);
    pool.acquire(30'000'000);
    EXPECT_EQ(pool.statistics().reuses, 1u);
}

TEST(PBufferPool, takes_at_most_a_sixteenth_or_a_page_more_than_was_requested) {
    for (std::size_t size = 1; size < 100 * megabyte; size += 1 + size / 7) {
        PBufferPool pool(megabyte);
        const auto buffer = pool.acquire(size);
        const std::size_t used = pool.statistics().usedBytes;
        EXPECT_GE(used, size);
        EXPECT_LE(used - size, std::max(size / 16, std::size_t(4095))) << size;
    }
}

TEST(PBufferPool, requests_huge_pages_for_what_every_image_of_its_size_class_touches) {
    const bool canHave = access("/sys/kernel/mm/transparent_hugepage", F_OK) == 0;
    constexpr std::size_t size = 60'000'000;
    PBufferPool pool(megabyte);
    const auto buffer = pool.acquire(size);
    ASSERT_TRUE(buffer);
    ASSERT_NE(readMappingFlags(buffer.get()), "");
    EXPECT_EQ(hasHugePages(buffer.get()), canHave);
    EXPECT_EQ(hasHugePages(buffer.get() + 50 * megabyte), canHave);
    EXPECT_FALSE(hasHugePages(buffer.get() + size)) << "would be resident without being used";
}

TEST(PBufferPool, counts_what_is_used_and_what_waits) {
    PBufferPool pool(64 * megabyte, forEver);
    auto first = pool.acquire(2 * megabyte);
    auto second = pool.acquire(3 * megabyte);
    EXPECT_EQ(pool.statistics().usedBytes, 5 * megabyte);
    EXPECT_EQ(pool.statistics().idleBytes, 0u);
    first.reset();
    EXPECT_EQ(pool.statistics().usedBytes, 3 * megabyte);
    EXPECT_EQ(pool.statistics().idleBytes, 2 * megabyte);
    second.reset();
    EXPECT_EQ(pool.statistics().usedBytes, 0u);
    EXPECT_EQ(pool.statistics().idleBytes, 5 * megabyte);
}

TEST(PBufferPool, keeps_no_more_waiting_than_its_limit_and_drops_the_oldest) {
    PBufferPool pool(5 * megabyte, forEver);
    auto oldest = pool.acquire(2 * megabyte);
    auto middle = pool.acquire(2 * megabyte);
    auto newest = pool.acquire(3 * megabyte);
    oldest.reset();
    middle.reset();
    newest.reset();
    EXPECT_EQ(pool.statistics().idleBytes, 5 * megabyte);
    pool.acquire(3 * megabyte);
    EXPECT_EQ(pool.statistics().reuses, 1u) << "the newest is still there";
}

TEST(PBufferPool, keeps_nothing_waiting_that_alone_exceeds_its_limit) {
    PBufferPool pool(5 * megabyte, forEver);
    auto small = pool.acquire(2 * megabyte);
    small.reset();
    pool.acquire(6 * megabyte);
    EXPECT_EQ(pool.statistics().idleBytes, 2 * megabyte) << "the small one keeps its place";
}

TEST(PBufferPool, keeps_at_most_64_buffers_waiting) {
    PBufferPool pool(64 * megabyte, forEver);
    std::vector<PBufferPool::Buffer> buffers;
    for (int i = 0; i < 70; ++i)
        buffers.push_back(pool.acquire(4096));
    buffers.clear();
    EXPECT_EQ(pool.statistics().idleBytes, 64u * 4096);
}

TEST(PBufferPool, gives_back_what_has_waited_too_long_when_another_is_taken) {
    PBufferPool pool(64 * megabyte, std::chrono::milliseconds(0));
    pool.acquire(2 * megabyte);
    EXPECT_EQ(pool.statistics().idleBytes, 2 * megabyte);
    const auto other = pool.acquire(megabyte);
    EXPECT_EQ(pool.statistics().idleBytes, 0u);
}

TEST(PBufferPool, gives_back_what_has_waited_too_long_when_another_is_released) {
    PBufferPool pool(64 * megabyte, std::chrono::milliseconds(0));
    auto first = pool.acquire(2 * megabyte);
    auto second = pool.acquire(megabyte);
    first.reset();
    second.reset();
    EXPECT_EQ(pool.statistics().idleBytes, megabyte);
}

TEST(PBufferPool, gives_everything_that_waits_back_on_trim_and_nothing_in_use) {
    PBufferPool pool(64 * megabyte, forEver);
    const auto used = pool.acquire(megabyte);
    used.get()[0] = 7;
    pool.acquire(2 * megabyte);
    pool.trim();
    EXPECT_EQ(pool.statistics().idleBytes, 0u);
    EXPECT_EQ(pool.statistics().usedBytes, megabyte);
    EXPECT_EQ(used.get()[0], 7);
}

TEST(PBufferPool, really_unmaps_what_it_gives_back) {
    PBufferPool pool(64 * megabyte, forEver);
    auto buffer = pool.acquire(2 * megabyte);
    unsigned char* memory = buffer.get();
    unsigned char page = 0;
    buffer.reset();
    EXPECT_EQ(mincore(memory, 4096, &page), 0) << "what waits is still mapped";
    pool.trim();
    EXPECT_EQ(mincore(memory, 4096, &page), -1);
    EXPECT_EQ(errno, ENOMEM) << "the system's answer for memory that is not mapped";
}

TEST(PBufferPool, gets_memory_of_the_system_after_trim_and_not_what_it_had) {
    PBufferPool pool(64 * megabyte, forEver);
    auto buffer = pool.acquire(2 * megabyte);
    std::memset(buffer.get(), 0xAB, 2 * megabyte);
    buffer.reset();
    pool.trim();
    buffer = pool.acquire(2 * megabyte);
    EXPECT_TRUE(isZero(buffer.get(), 2 * megabyte)) << "only the system hands out zeros";
    EXPECT_EQ(pool.statistics().allocations, 2u);
}

TEST(PBufferPool, may_be_destroyed_before_its_buffers) {
    PBufferPool::Buffer buffer;
    {
        PBufferPool pool(64 * megabyte, forEver);
        pool.acquire(megabyte);
        buffer = pool.acquire(2 * megabyte);
    }
    std::memset(buffer.get(), 1, 2 * megabyte);
    buffer.reset();
}

TEST(PBufferPool, may_be_used_from_several_threads) {
    PBufferPool pool(8 * megabyte);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&pool, t] {
            for (int i = 0; i < 200; ++i) {
                const std::size_t size = 4096 * std::size_t(1 + i % 3);
                const auto buffer = pool.acquire(size);
                ASSERT_TRUE(buffer);
                std::memset(buffer.get(), t, size);
                EXPECT_EQ(buffer.get()[size - 1], t);
                if (i % 50 == 0)
                    pool.trim();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const auto statistics = pool.statistics();
    EXPECT_EQ(statistics.usedBytes, 0u);
    EXPECT_EQ(statistics.allocations + statistics.reuses, 800u);
}

TEST(PBufferPool, of_images_is_one_for_the_whole_program) {
    EXPECT_EQ(&PBufferPool::instance(), &PBufferPool::instance());
}

namespace {

/// A static is destroyed after main() has returned, in an undefined order. If the pool were already
/// destroyed by then, the program would crash, and the test run with it.
struct LateImage {
    PBufferPool::Buffer buffer;
};

LateImage lateImage;

} // namespace

TEST(PBufferPoolDeathTest, outlives_statics_that_hold_its_buffers) {
    lateImage.buffer = PBufferPool::instance().acquire(megabyte);
    ASSERT_TRUE(lateImage.buffer);
    runDeathTestsInANewProcess();
    EXPECT_EXIT(std::exit(0), testing::ExitedWithCode(0), "");
}

#if defined(__SANITIZE_ADDRESS__)
TEST(PBufferPoolDeathTest, lets_the_address_sanitizer_find_an_access_behind_a_buffer) {
    PBufferPool pool(megabyte);
    const auto buffer = pool.acquire(1000);
    runDeathTestsInANewProcess();
    EXPECT_DEATH(buffer.get()[1000] = 1, "use-after-poison");
}

TEST(PBufferPoolDeathTest, lets_the_address_sanitizer_find_an_access_to_a_released_buffer) {
    PBufferPool pool(megabyte);
    auto buffer = pool.acquire(1000);
    unsigned char* memory = buffer.get();
    buffer.reset();
    runDeathTestsInANewProcess();
    EXPECT_DEATH(memory[0] = 1, "use-after-poison");
}
#endif
