// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PRowSplit.h>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#if defined(__x86_64__)

namespace {

#define PCD_AVX2 __attribute__((target("avx2,popcnt")))

constexpr std::size_t pixelsAtOnce = 32; // pixels, with one register for each of their samples

// Processors read ahead on their own, but only to the end of a page; this far, memory is never
// idle.
constexpr std::size_t aheadBytes = 4096;

struct Samples {
    __m256i blue;
    __m256i green;
    __m256i red;
};

/// 16 bytes from here and, for the pixels that follow, 16 from 16 pixels on.
PCD_AVX2 __m256i load(const unsigned char* bytes) {
    const auto at = [bytes](int offset) {
        return reinterpret_cast<const __m128i*>(bytes + offset);
    };
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(at(0))),
                                   _mm_loadu_si128(at(48)), 1);
}

/// The same 16 bytes in both halves.
PCD_AVX2 __m256i twice(__m128i half) {
    return _mm256_broadcastsi128_si256(half);
}

/// 16 pixels are three registers of 16 bytes. A colour has every third byte in each of them, and
/// no two of its bytes are at the same place: they are merged, then put in order.
PCD_AVX2 Samples loadSamples(const unsigned char* pixels) {
    const __m256i a = load(pixels);
    const __m256i b = load(pixels + 16);
    const __m256i c = load(pixels + 32);
    // The places 0, 3, 6…; 1, 4, 7…; 2, 5, 8….
    const __m256i m0 = twice(_mm_setr_epi8(-1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1));
    const __m256i m1 = twice(_mm_setr_epi8(0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0));
    const __m256i m2 = twice(_mm_setr_epi8(0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0));
    const __m256i blue = _mm256_blendv_epi8(_mm256_blendv_epi8(c, b, m2), a, m0);
    const __m256i green = _mm256_blendv_epi8(_mm256_blendv_epi8(c, b, m0), a, m1);
    const __m256i red = _mm256_blendv_epi8(_mm256_blendv_epi8(c, b, m1), a, m2);
    return {_mm256_shuffle_epi8(
                blue, twice(_mm_setr_epi8(0, 3, 6, 9, 12, 15, 2, 5, 8, 11, 14, 1, 4, 7, 10, 13))),
            _mm256_shuffle_epi8(
                green, twice(_mm_setr_epi8(1, 4, 7, 10, 13, 0, 3, 6, 9, 12, 15, 2, 5, 8, 11, 14))),
            _mm256_shuffle_epi8(
                red, twice(_mm_setr_epi8(2, 5, 8, 11, 14, 1, 4, 7, 10, 13, 0, 3, 6, 9, 12, 15)))};
}

PCD_AVX2 void store(void* place, __m256i value) {
    _mm256_storeu_si256(static_cast<__m256i*>(place), value);
}

PCD_AVX2 void countClipped(const Samples& samples, PRowSplit::Clipped& clipped) {
    const __m256i highest =
        _mm256_max_epu8(_mm256_max_epu8(samples.blue, samples.green), samples.red);
    const __m256i over = _mm256_cmpeq_epi8(highest, _mm256_set1_epi8(-1));
    const __m256i under = _mm256_cmpeq_epi8(highest, _mm256_setzero_si256());
    clipped.over += unsigned(_mm_popcnt_u32(unsigned(_mm256_movemask_epi8(over))));
    clipped.under += unsigned(_mm_popcnt_u32(unsigned(_mm256_movemask_epi8(under))));
}

/// Of 16 pixels, given as pairs of blue and green, red and green, red and 0. The weight of green is
/// divided between two of them, so that both weighted sums are less than 2^15.
PCD_AVX2 __m256i redAndLuma(__m256i blueGreen, __m256i redGreen, __m256i red) {
    constexpr int greenWithRed = 128 - int(PRowSplit::redWeight);
    constexpr int greenWithBlue = int(PRowSplit::greenWeight) - greenWithRed;
    const __m256i luma = _mm256_add_epi16(
        _mm256_maddubs_epi16(blueGreen,
                             _mm256_set1_epi16(greenWithBlue << 8 | int(PRowSplit::blueWeight))),
        _mm256_maddubs_epi16(redGreen,
                             _mm256_set1_epi16(greenWithRed << 8 | int(PRowSplit::redWeight))));
    return _mm256_or_si256(_mm256_andnot_si256(_mm256_set1_epi16(0xFF), luma), red);
}

PCD_AVX2 void splitStep(const unsigned char* pixels, unsigned char* green, quint16* thirdAndLuma,
                        PRowSplit::Clipped& clipped) {
    __builtin_prefetch(pixels + aheadBytes);
    __builtin_prefetch(pixels + aheadBytes + 64);
    const Samples samples = loadSamples(pixels);
    const auto [b, g, r] = samples;
    const __m256i zero = _mm256_setzero_si256();
    store(green, g);
    store(thirdAndLuma, redAndLuma(_mm256_unpacklo_epi8(b, g), _mm256_unpacklo_epi8(r, g),
                                   _mm256_unpacklo_epi8(r, zero)));
    store(thirdAndLuma + 16, redAndLuma(_mm256_unpackhi_epi8(b, g), _mm256_unpackhi_epi8(r, g),
                                        _mm256_unpackhi_epi8(r, zero)));
    countClipped(samples, clipped);
}

PCD_AVX2 void splitInSteps(const unsigned char* pixels, std::size_t count,
                           const PRowSplit::Parts& parts, PRowSplit::Clipped& clipped) {
    std::size_t done = 0;
    for (; count - done >= pixelsAtOnce; done += pixelsAtOnce)
        splitStep(pixels + done * PRowSplit::Bgr::bytes, parts.green + done,
                  parts.thirdAndLuma + done, clipped);
    PRowSplit::splitPlainly<PRowSplit::Bgr>(pixels + done * PRowSplit::Bgr::bytes, count - done,
                                            {parts.green + done, parts.thirdAndLuma + done},
                                            clipped);
}

#undef PCD_AVX2

} // namespace

#endif

namespace {

std::vector<PRowSplit::Split> findSplits() {
    std::vector<PRowSplit::Split> ways{PRowSplit::splitPlainly<PRowSplit::Bgr>};
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt"))
        ways.push_back(splitInSteps);
#endif
    return ways;
}

} // namespace

const std::vector<PRowSplit::Split>& PRowSplit::bgrWays() {
    static const std::vector<Split> ways = findSplits();
    return ways;
}
