// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimGeometry.h>

#include <cstddef>
#include <cstdint>

/// The mean of each channel, 0 … 255, in the order red, green, blue; grey has three equal ones.
struct PSimMeans {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;

    double all() const { return (red + green + blue) / 3.0; }
};

/// Measures a picture row by row on a grid of some thousand pixels, for auto-exposure and white
/// balance. Used on one thread.
class PSimMeter {
public:
    PSimMeter(const PSimSize& size, unsigned channels);

    /// Row `y` of the picture; every row is added once.
    void add(unsigned y, const std::uint8_t* row);
    PSimMeans means(bool blueFirst) const;

private:
    unsigned m_width;
    unsigned m_channels;
    unsigned m_across;
    unsigned m_down;
    std::uint64_t m_sums[3] = {};
    std::uint64_t m_count = 0;
};
