// SPDX-License-Identifier: MIT
#include <PDip/PFourthByte.h>

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

/// Pixels is one pixel, or a Line of them.
template <typename Pixels>
void fillPixels(unsigned char* pixels) {
    Pixels values;
    std::memcpy(&values, pixels, sizeof values);
    values |= qToLittleEndian(quint32(0xFF000000));
    std::memcpy(pixels, &values, sizeof values);
}

/// Line by line, each requested in advance. A request beyond the image has no effect.
void fillInLines(unsigned char* pixels, std::size_t size) {
    for (; size >= sizeof(Line); size -= sizeof(Line), pixels += sizeof(Line)) {
        __builtin_prefetch(pixels + aheadBytes, 1);
        fillPixels<Line>(pixels);
    }
    for (; size > 0; size -= pixelBytes, pixels += pixelBytes)
        fillPixels<quint32>(pixels);
}

#if defined(__x86_64__)

__attribute__((target("avx2"))) void fillEight(unsigned char* pixels) {
    auto* const place = reinterpret_cast<__m256i*>(pixels);
    const __m256i opaque = _mm256_set1_epi32(int(0xFF000000));
    _mm256_storeu_si256(place, _mm256_or_si256(_mm256_loadu_si256(place), opaque));
}

/// Two lines at a time; isAhead says whether they are requested in advance.
template <bool isAhead>
__attribute__((target("avx2"))) void fillInEights(unsigned char* pixels, std::size_t size) {
    constexpr std::size_t step = 2 * sizeof(Line);
    for (; size >= step; size -= step, pixels += step) {
        if (isAhead) {
            __builtin_prefetch(pixels + aheadBytes, 1);
            __builtin_prefetch(pixels + aheadBytes + sizeof(Line), 1);
        }
        for (std::size_t i = 0; i < step; i += sizeof(__m256i))
            fillEight(pixels + i);
    }
    fillInLines(pixels, size);
}

#endif

std::vector<PFourthByte::Fill> findWaysToFill() {
    std::vector<PFourthByte::Fill> ways{fillInLines};
#if defined(__x86_64__)
    if (PProcessor::hasAvx2()) {
        const bool isAheadBest = PProcessor::stopsReadingAtPages();
        ways.push_back(isAheadBest ? fillInEights<false> : fillInEights<true>);
        ways.push_back(isAheadBest ? fillInEights<true> : fillInEights<false>);
    }
#endif
    return ways;
}

} // namespace

const std::vector<PFourthByte::Fill>& PFourthByte::allWays() {
    static const std::vector<Fill> ways = findWaysToFill();
    return ways;
}

PFourthByte::Fill PFourthByte::fastest() {
    return allWays().back();
}
