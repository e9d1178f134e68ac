// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The light that falls on the sensor, without exposure and noise: 255 is full light. Created once
/// for a resolution and then only read, from any thread.
struct PSimLight {
    unsigned width = 0; ///< pixels, the margin on both sides included
    unsigned height = 0;
    unsigned channels = 1; ///< 1 grey, 3 colour
    unsigned margin = 0;   ///< pixels around the picture that drift may show
    std::vector<std::uint8_t> values;
    std::vector<std::uint8_t> roots; ///< 16 times the square root of each value

    std::size_t rowBytes() const { return std::size_t{width} * channels; }

    /// Lights a colour picture, red first, with a lamp of this colour temperature.
    void lightWith(double kelvin);
    /// Swaps red and blue.
    void swapColours();
    /// Fills `roots` from `values`; the last step of creating a light.
    void computeRoots();
};

/// Makes the light of a procedural specimen, or of none (Kind::Tissue, Fluorescence, Flat), red
/// first, in white light. Callable from any thread.
PSimLight simulatedSpecimen(const PSimSourceSpec& source, unsigned width, unsigned height,
                            unsigned channels, std::uint64_t seed);

/// Makes the light of a picture file that fills the field, red first; black if the file cannot be
/// read any more (reported on stderr). Callable from any thread.
PSimLight picturedSpecimen(const QString& path, unsigned width, unsigned height, unsigned channels);
