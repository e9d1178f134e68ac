// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Small deterministic random numbers: the same seed gives the same picture and the same run
/// everywhere. Not shared between threads.
class PSimRandom {
public:
    explicit PSimRandom(std::uint64_t seed)
        : m_state(seed) {}

    /// SplitMix64 (Steele, Lea, Flood 2014): a good 64-bit hash of a counter.
    static std::uint64_t mix(std::uint64_t value) {
        value += 0x9e3779b97f4a7c15ULL;
        value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ULL;
        value = (value ^ (value >> 27)) * 0x94d049bb133111ebULL;
        return value ^ (value >> 31);
    }

    std::uint64_t next() { return mix(m_state++); }

    /// Evenly distributed in [0, 1).
    double uniform() { return double(next() >> 11) * 0x1.0p-53; }

    /// Evenly distributed in [low, high).
    double between(double low, double high) { return low + (high - low) * uniform(); }

    /// Whole number in [0, limit), for a limit far below 2^64.
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }

private:
    std::uint64_t m_state;
};
