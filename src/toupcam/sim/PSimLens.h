// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/PSimMeter.h>
#include <toupcam/sim/PSimScene.h>
#include <toupcam/sim/PSimShot.h>
#include <toupcam/toupcam.h>

#include <cstdint>
#include <memory>
#include <vector>

/// One picture as the camera delivers it: rows on 4-byte boundaries, top row first.
struct PSimPicture {
    const std::uint8_t* pixels = nullptr; ///< into `memory`, or into memory of the lens
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
    BITMAPINFOHEADER header() const;
    /// Makes the memory large enough and has `pixels` point there.
    std::uint8_t* ownPixels();
};

/// What lies under the lens and how it becomes pictures. Thread-safe; a camera's producing thread
/// calls take().
class PSimLens {
public:
    virtual ~PSimLens() = default;

    /// Takes picture number `frame` at the time in `picture`: fills its size, format, means and
    /// pixels, reusing its memory.
    virtual void take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) = 0;
    /// Whether exposure and gain change the pictures.
    virtual bool isExposed() const = 0;
    /// Whether pictures come as fast as they are taken away instead of at the camera's rate.
    virtual bool isUnpaced() const { return false; }

    static std::shared_ptr<PSimLens> create(std::shared_ptr<const PSimCameraSpec> spec,
                                            std::uint64_t seed);
};
