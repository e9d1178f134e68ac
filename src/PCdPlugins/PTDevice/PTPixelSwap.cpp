// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPixelSwap.h>

#include <PDip/PProcessor.h>

#include <QtEndian>

#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr std::size_t pixelBytes = 4;
constexpr std::size_t aheadBytes = 4096; // a page

/// The pixels in a line of the processor's cache. Compilers split it into registers.
using Line = quint32 __attribute__((vector_size(64)));
constexpr std::size_t linePixels = sizeof(Line) / pixelBytes;

/// Pixels is one pixel, or a Line of them.
template <typename Pixels>
void swapPixels(unsigned char* pixels) {
    const quint32 others = qToLittleEndian(quint32(0xFF00FF00)); // the second and fourth byte
    Pixels values;
    std::memcpy(&values, pixels, sizeof values);
    const Pixels swapped = values & ~others;
    values = (values & others) | swapped >> 16 | swapped << 16;
    std::memcpy(pixels, &values, sizeof values);
}

/// Line by line, each requested in advance. A request beyond the image has no effect.
void swapInLines(unsigned char* pixels, std::size_t count) {
    for (; count >= linePixels; count -= linePixels, pixels += sizeof(Line)) {
        __builtin_prefetch(pixels + aheadBytes, 1);
        swapPixels<Line>(pixels);
    }
    for (; count > 0; --count, pixels += pixelBytes)
        swapPixels<quint32>(pixels);
}

#if defined(__x86_64__)

/// Eight pixels with one instruction, of which compilers make five. With those, waiting for memory
/// and computing take turns.
__attribute__((target("avx2"))) void swapEight(unsigned char* pixels) {
    const __m256i order = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15));
    auto* const place = reinterpret_cast<__m256i*>(pixels);
    _mm256_storeu_si256(place, _mm256_shuffle_epi8(_mm256_loadu_si256(place), order));
}

/// Two lines at a time; isAhead says whether they are requested in advance.
template <bool isAhead>
__attribute__((target("avx2"))) void swapInEights(unsigned char* pixels, std::size_t count) {
    constexpr std::size_t step = 2 * linePixels;
    for (; count >= step; count -= step, pixels += 2 * sizeof(Line)) {
        if (isAhead) {
            __builtin_prefetch(pixels + aheadBytes, 1);
            __builtin_prefetch(pixels + aheadBytes + sizeof(Line), 1);
        }
        for (std::size_t i = 0; i < step; i += 8)
            swapEight(pixels + i * pixelBytes);
    }
    swapInLines(pixels, count);
}

#endif

std::vector<PTPixelSwap::Swap> findWays() {
    std::vector<PTPixelSwap::Swap> ways{swapInLines};
#if defined(__x86_64__)
    if (PProcessor::hasAvx2()) {
        const bool isAheadBest = PProcessor::stopsReadingAtPages();
        ways.push_back(isAheadBest ? swapInEights<false> : swapInEights<true>);
        ways.push_back(isAheadBest ? swapInEights<true> : swapInEights<false>);
    }
#endif
    return ways;
}

} // namespace

const std::vector<PTPixelSwap::Swap>& PTPixelSwap::allWays() {
    static const std::vector<Swap> ways = findWays();
    return ways;
}

PTPixelSwap::Swap PTPixelSwap::fastest() {
    return allWays().back();
}
