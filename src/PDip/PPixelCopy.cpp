// SPDX-License-Identifier: MIT
#include <PDip/PPixelCopy.h>

#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#ifdef __SSE2__
namespace {

constexpr std::size_t lineSize = 64;         // of the caches
constexpr std::size_t prefetchedPage = 4096; // which the processor itself does not read beyond
constexpr std::size_t pagesAtATime = 4;
constexpr std::size_t groupSize = pagesAtATime * prefetchedPage;
constexpr std::size_t lead = 4 * lineSize; // requested this far ahead

/// Copies one line of the caches, without reading or keeping the target's.
void streamLine(unsigned char* target, const unsigned char* source) {
    const auto* const from = reinterpret_cast<const __m128i*>(source);
    auto* const to = reinterpret_cast<__m128i*>(target);
    const __m128i first = _mm_loadu_si128(from);
    const __m128i second = _mm_loadu_si128(from + 1);
    const __m128i third = _mm_loadu_si128(from + 2);
    const __m128i fourth = _mm_loadu_si128(from + 3);
    _mm_stream_si128(to, first);
    _mm_stream_si128(to + 1, second);
    _mm_stream_si128(to + 2, third);
    _mm_stream_si128(to + 3, fourth);
}

/// Copies several pages side by side: with one stream of reads, a processor waits for memory.
void streamGroup(unsigned char* target, const unsigned char* source) {
    for (std::size_t line = 0; line < prefetchedPage; line += lineSize) {
        for (std::size_t page = 0; page < groupSize; page += prefetchedPage) {
            const std::size_t offset = page + line;
            _mm_prefetch(reinterpret_cast<const char*>(source) + offset + lead, _MM_HINT_T0);
            streamLine(target + offset, source + offset);
        }
    }
}

} // namespace
#endif

void PPixelCopy::copy(unsigned char* target, const unsigned char* source, std::size_t size) {
    if (size < pastCachesFrom || reinterpret_cast<std::uintptr_t>(target) % 16 != 0)
        copyThroughCaches(target, source, size);
    else
        copyPastCaches(target, source, size);
}

void PPixelCopy::copyThroughCaches(unsigned char* target, const unsigned char* source,
                                   std::size_t size) {
    std::memcpy(target, source, size);
}

void PPixelCopy::copyPastCaches(unsigned char* target, const unsigned char* source,
                                std::size_t size) {
    std::size_t done = 0;
#ifdef __SSE2__ // part of the x86-64 baseline
    for (; size - done >= groupSize; done += groupSize)
        streamGroup(target + done, source + done);
    _mm_sfence(); // such stores are ordered by nothing else, not even by a mutex
#endif
    copyThroughCaches(target + done, source + done, size - done);
}
