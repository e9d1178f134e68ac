// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PRedBlueSwap.h>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr std::size_t bytesOfPixel = 3;

void copyPlainly(const uchar* from, uchar* to, std::size_t pixels) {
    for (const uchar* const end = from + pixels * bytesOfPixel; from != end; from += bytesOfPixel) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
        to += bytesOfPixel;
    }
}

#if defined(__x86_64__)

constexpr std::size_t block = 20; // pixels: nearly a line of the processor's cache
constexpr std::size_t lanes = 8;

/// Five pixels in one register, which compilers do not do on their own: they have no use for its
/// last byte. Here that is written too, beyond the five, and must be overwritten.
__attribute__((target("ssse3"))) void copyFive(const uchar* from, uchar* to) {
    const __m128i order = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15);
    const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(pixels, order));
}

/// Copies from this pixel on; the last ones one by one, so that nothing is written beyond them.
__attribute__((target("ssse3"))) void copyInFives(const uchar* from, uchar* to, std::size_t first,
                                                  std::size_t end) {
    for (; end - first > 5; first += 5)
        copyFive(from + first * bytesOfPixel, to + first * bytesOfPixel);
    copyPlainly(from + first * bytesOfPixel, to + first * bytesOfPixel, end - first);
}

/// By one load instruction on purpose: the processor's prefetcher watches each one, and with four
/// of them (unrolled) copying took a quarter longer, and so did writing the copy to a file.
__attribute__((target("ssse3"))) void copyBlock(const uchar* from, uchar* to, std::size_t first) {
#ifdef __clang__
#pragma nounroll
#else
#pragma GCC unroll 1
#endif
    for (std::size_t pixel = first; pixel < first + block; pixel += 5)
        copyFive(from + pixel * bytesOfPixel, to + pixel * bytesOfPixel);
}

/// In several places at once: the processor reads ahead in each of them, but only within a page of
/// memory, so that one place alone would wait for the memory at every page.
__attribute__((target("ssse3"))) void copyInLanes(const uchar* from, uchar* to,
                                                  std::size_t pixels) {
    const std::size_t lane = pixels / lanes;
    const std::size_t inBlocks = lane == 0 ? 0 : (lane - 1) / block * block;
    for (std::size_t done = 0; done < inBlocks; done += block) {
        for (std::size_t i = 0; i < lanes; ++i)
            copyBlock(from, to, i * lane + done);
    }
    for (std::size_t i = 0; i < lanes; ++i)
        copyInFives(from, to, i * lane + inBlocks, (i + 1) * lane);
    copyInFives(from, to, lanes * lane, pixels);
}

#endif

std::vector<PRedBlueSwap::Copy> findWays() {
    std::vector<PRedBlueSwap::Copy> ways{copyPlainly};
#if defined(__x86_64__)
    if (__builtin_cpu_supports("ssse3"))
        ways.push_back(copyInLanes);
#endif
    return ways;
}

} // namespace

const std::vector<PRedBlueSwap::Copy>& PRedBlueSwap::allWays() {
    static const std::vector<Copy> ways = findWays();
    return ways;
}

PRedBlueSwap::Copy PRedBlueSwap::fastest() {
    return allWays().back();
}
