// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PGradient.h>

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr std::size_t block = 1024; // samples whose squares, at most 2^21 each, fit into 32 bits

/// Three rows, at the same sample.
struct Rows {
    const unsigned char* above;
    const unsigned char* row;
    const unsigned char* below;

    void advance(std::size_t count) {
        above += count;
        row += count;
        below += count;
    }
};

int squaredGradient(const Rows& at) {
    const int across = (at.above[1] + 2 * at.row[1] + at.below[1]) -
                       (at.above[-1] + 2 * at.row[-1] + at.below[-1]);
    const int down = (at.below[-1] + 2 * at.below[0] + at.below[1]) -
                     (at.above[-1] + 2 * at.above[0] + at.above[1]);
    return across * across + down * down;
}

void addSamples(Rows at, std::size_t count, PGradient::Sums& sums) {
    for (; count > 0; --count, at.advance(1)) {
        sums.squares += unsigned(squaredGradient(at));
        sums.samples += *at.row;
    }
}

void addPlainly(const unsigned char* above, const unsigned char* row, const unsigned char* below,
                std::size_t width, PGradient::Sums& sums) {
    if (width > 2)
        addSamples({above + 1, row + 1, below + 1}, width - 2, sums);
}

#if defined(__x86_64__)

#define PCD_AVX2 __attribute__((target("avx2")))

PCD_AVX2 __m256i loadFrom(const unsigned char* samples) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(samples));
}

/// Of pairs of bytes: the first minus the second, both times this weight.
PCD_AVX2 __m256i differences(__m256i pairs, int weight) {
    return _mm256_maddubs_epi16(pairs, _mm256_set1_epi16(short(weight - (weight << 8))));
}

/// The squared gradients of 16 samples, given as pairs, as eight sums of 32 bits.
PCD_AVX2 __m256i halfSquares(__m256i first, __m256i middle, __m256i last) {
    const __m256i gradient = _mm256_add_epi16(
        _mm256_add_epi16(differences(first, 1), differences(last, 1)), differences(middle, 2));
    return _mm256_madd_epi16(gradient, gradient);
}

/// The squared gradients of 32 samples, as eight sums of 32 bits.
PCD_AVX2 __m256i squares(const Rows& at) {
    const __m256i aboveLeft = loadFrom(at.above - 1);
    const __m256i aboveRight = loadFrom(at.above + 1);
    const __m256i belowLeft = loadFrom(at.below - 1);
    const __m256i belowRight = loadFrom(at.below + 1);
    const __m256i left = loadFrom(at.row - 1);
    const __m256i right = loadFrom(at.row + 1);
    const __m256i above = loadFrom(at.above);
    const __m256i below = loadFrom(at.below);
    const __m256i across = _mm256_add_epi32(
        halfSquares(_mm256_unpacklo_epi8(aboveRight, aboveLeft), _mm256_unpacklo_epi8(right, left),
                    _mm256_unpacklo_epi8(belowRight, belowLeft)),
        halfSquares(_mm256_unpackhi_epi8(aboveRight, aboveLeft), _mm256_unpackhi_epi8(right, left),
                    _mm256_unpackhi_epi8(belowRight, belowLeft)));
    const __m256i down = _mm256_add_epi32(
        halfSquares(_mm256_unpacklo_epi8(belowLeft, aboveLeft), _mm256_unpacklo_epi8(below, above),
                    _mm256_unpacklo_epi8(belowRight, aboveRight)),
        halfSquares(_mm256_unpackhi_epi8(belowLeft, aboveLeft), _mm256_unpackhi_epi8(below, above),
                    _mm256_unpackhi_epi8(belowRight, aboveRight)));
    return _mm256_add_epi32(across, down);
}

template <typename Number>
PCD_AVX2 quint64 sumAll(__m256i numbers) {
    Number parts[sizeof(__m256i) / sizeof(Number)];
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(parts), numbers);
    quint64 sum = 0;
    for (const Number part : parts)
        sum += part;
    return sum;
}

/// Adds whole steps of 32, in a number of them that fits. Returns the number of samples.
PCD_AVX2 std::size_t addBlock(Rows at, std::size_t count, PGradient::Sums& sums) {
    constexpr std::size_t step = 32;
    const std::size_t end = std::min(count, block) / step * step;
    __m256i squareSums = _mm256_setzero_si256();
    __m256i sampleSums = _mm256_setzero_si256();
    for (std::size_t done = 0; done < end; done += step, at.advance(step)) {
        squareSums = _mm256_add_epi32(squareSums, squares(at));
        sampleSums =
            _mm256_add_epi64(sampleSums, _mm256_sad_epu8(loadFrom(at.row), _mm256_setzero_si256()));
    }
    sums.squares += sumAll<quint32>(squareSums);
    sums.samples += sumAll<quint64>(sampleSums);
    return end;
}

PCD_AVX2 void addInSteps(const unsigned char* above, const unsigned char* row,
                         const unsigned char* below, std::size_t width, PGradient::Sums& sums) {
    if (width <= 2)
        return;
    Rows at{above + 1, row + 1, below + 1};
    std::size_t left = width - 2;
    while (const std::size_t done = addBlock(at, left, sums)) {
        at.advance(done);
        left -= done;
    }
    addSamples(at, left, sums);
}

#undef PCD_AVX2

#endif

std::vector<PGradient::Add> findAdds() {
    std::vector<PGradient::Add> ways{addPlainly};
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        ways.push_back(addInSteps);
#endif
    return ways;
}

} // namespace

const std::vector<PGradient::Add>& PGradient::allWays() {
    static const std::vector<Add> ways = findAdds();
    return ways;
}

PGradient::Add PGradient::fastest() {
    return allWays().back();
}
