// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Smooth random fields over the plane (value noise on a square lattice), what the procedural
/// specimens are made of. Immutable, callable from any thread.
class PSimNoiseField {
public:
    explicit PSimNoiseField(std::uint64_t seed)
        : m_seed(std::uint32_t(seed ^ (seed >> 32))) {}

    /// A field of features about one unit wide, 0 … 1.
    float value(float x, float y) const;

    /// The sum of `octaves` such fields, each half as large and half as strong, 0 … 1.
    float fractal(float x, float y, int octaves) const;

private:
    float lattice(std::int32_t x, std::int32_t y) const;

    std::uint32_t m_seed;
};
