// SPDX-License-Identifier: MIT
#include <PDip/PPixelCopy.h>

#include <PDip/PBufferPool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t groupSize = 4 * 4096; // bytes that a copy past the caches does at a time
constexpr std::size_t noisePeriod = 65521;

using Bytes = std::vector<unsigned char>;

/// Bytes that repeat themselves after a prime number of them only, unlike pages and the lines of
/// caches.
Bytes makeNoise(std::size_t size) {
    Bytes bytes(size);
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < std::min(size, noisePeriod); ++i) {
        state = state * 1664525u + 1013904223u;
        bytes[i] = static_cast<unsigned char>(state >> 24);
    }
    for (std::size_t done = noisePeriod; done < size; done += noisePeriod)
        std::memcpy(&bytes[done], bytes.data(), std::min(noisePeriod, size - done));
    return bytes;
}

/// A target with guards around it, aligned as the memory of images is.
class Target {
public:
    explicit Target(std::size_t size)
        : m_size(size)
        , m_buffer(PBufferPool::instance().acquire(size + 2 * guard)) {
        std::memset(m_buffer.get(), 0xEE, size + 2 * guard);
    }
    unsigned char* bytes() const { return m_buffer.get() + guard; }
    Bytes content() const { return {bytes(), bytes() + m_size}; }
    bool areGuardsIntact() const {
        const Bytes intact(guard, 0xEE);
        return std::memcmp(m_buffer.get(), intact.data(), guard) == 0 &&
               std::memcmp(bytes() + m_size, intact.data(), guard) == 0;
    }

private:
    static constexpr std::size_t guard = 64;
    std::size_t m_size;
    PBufferPool::Buffer m_buffer;
};

} // namespace

TEST(PPixelCopy, past_the_caches_it_copies_the_same_bytes_as_through_them) {
    constexpr std::size_t farthest = 65;
    const Bytes source = makeNoise(3 * groupSize + farthest);
    for (const std::size_t size : {std::size_t(0), std::size_t(1), groupSize - 1, groupSize,
                                   groupSize + 1, 2 * groupSize, 3 * groupSize}) {
        for (const std::size_t offset :
             {std::size_t(0), std::size_t(1), std::size_t(16), farthest}) {
            const Target past(size);
            const Target through(size);
            PPixelCopy::copyPastCaches(past.bytes(), source.data() + offset, size);
            PPixelCopy::copyThroughCaches(through.bytes(), source.data() + offset, size);
            EXPECT_EQ(past.content(), through.content()) << size << " from " << offset;
            EXPECT_TRUE(past.areGuardsIntact()) << size << " from " << offset;
            EXPECT_TRUE(through.areGuardsIntact()) << size << " from " << offset;
        }
    }
}

TEST(PPixelCopy, a_copy_is_the_same_on_both_sides_of_the_size_from_which_it_goes_past_the_caches) {
    const Bytes source = makeNoise(PPixelCopy::pastCachesFrom + 1);
    for (const std::size_t size :
         {PPixelCopy::pastCachesFrom - 1, PPixelCopy::pastCachesFrom + 1}) {
        const Target target(size);
        PPixelCopy::copy(target.bytes(), source.data(), size);
        EXPECT_EQ(std::memcmp(target.bytes(), source.data(), size), 0) << size;
        EXPECT_TRUE(target.areGuardsIntact()) << size;
    }
}

TEST(PPixelCopy, a_large_target_without_alignment_is_filled_too) {
    const Bytes source = makeNoise(PPixelCopy::pastCachesFrom);
    const Target target(source.size() + 1);
    PPixelCopy::copy(target.bytes() + 1, source.data(), source.size());
    EXPECT_EQ(std::memcmp(target.bytes() + 1, source.data(), source.size()), 0);
    EXPECT_TRUE(target.areGuardsIntact());
}
