// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <random>
#include <vector>

/// Pixels that take as long to compress as a camera's. Any thread.
namespace SensorNoise {

/// Even light with the noise of a sensor, the same every time.
inline void fill(unsigned char* pixels, std::size_t size) {
    std::mt19937 random(1);
    std::normal_distribution<float> noise(160, 4);
    std::vector<unsigned char> samples(1 << 20);
    for (unsigned char& sample : samples)
        sample = static_cast<unsigned char>(noise(random));
    for (std::size_t i = 0; i < size; ++i)
        pixels[i] = samples[(i * 257) % samples.size()];
}

} // namespace SensorNoise
