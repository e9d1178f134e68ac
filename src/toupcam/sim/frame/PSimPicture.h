// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimMeter.h>
#include <toupcam/toupcam.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// One picture as the camera delivers it: rows on 4-byte boundaries, top row first. Used by
/// one thread at a time.
struct PSimPicture {
    const std::uint8_t* pixels = nullptr; ///< points into `memory`, or into the image source's
    std::vector<std::uint8_t> memory;     ///< kept from picture to picture
    unsigned width = 0;
    unsigned height = 0;
    unsigned bits = 24;
    bool blueFirst = false;
    unsigned sequence = 0;
    std::uint64_t microseconds = 0;
    PSimMeans means; ///< before colour and tone

    std::size_t stride() const { return (std::size_t{width} * bits + 31) / 32 * 4; }
    std::size_t bytes() const { return stride() * height; }
    /// The header that push mode delivers with the pixels.
    BITMAPINFOHEADER header() const;
    /// Makes the memory large enough and sets `pixels` to it.
    std::uint8_t* ownPixels();
};
