// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimNoiseField.h>

#include <cmath>

float PSimNoiseField::lattice(std::int32_t x, std::int32_t y) const {
    std::uint32_t h = m_seed + std::uint32_t(x) * 0x8da6b343U + std::uint32_t(y) * 0xd8163841U;
    h = (h ^ (h >> 15)) * 0x2c1b3c6dU;
    h = (h ^ (h >> 12)) * 0x297a2d39U;
    return float((h ^ (h >> 15)) >> 8) * 0x1.0p-24F;
}

float PSimNoiseField::value(float x, float y) const {
    const float fx = std::floor(x);
    const float fy = std::floor(y);
    const auto ix = std::int32_t(fx);
    const auto iy = std::int32_t(fy);
    const float tx = x - fx;
    const float ty = y - fy;
    const float sx = tx * tx * (3.0F - 2.0F * tx);
    const float sy = ty * ty * (3.0F - 2.0F * ty);
    const float top = lattice(ix, iy) + sx * (lattice(ix + 1, iy) - lattice(ix, iy));
    const float bottom = lattice(ix, iy + 1) + sx * (lattice(ix + 1, iy + 1) - lattice(ix, iy + 1));
    return top + sy * (bottom - top);
}

float PSimNoiseField::fractal(float x, float y, int octaves) const {
    float sum = 0.0F;
    float weight = 1.0F;
    float total = 0.0F;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * value(x, y);
        total += weight;
        weight *= 0.5F;
        x = 2.0F * x + 17.3F; // shifted, so that the lattices of the octaves do not line up
        y = 2.0F * y + 9.1F;
    }
    return sum / total;
}
