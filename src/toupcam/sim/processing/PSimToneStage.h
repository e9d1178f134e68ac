// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/processing/PSimColour.h>
#include <toupcam/sim/processing/PSimTone.h>

/// Image settings prepared for rows of pixels: nothing to do, a table for each channel, or a matrix
/// and a table. Immutable, callable from any thread.
class PSimToneStage {
public:
    /// For rows of `channels` (1 or 3) bytes a pixel.
    PSimToneStage(const PSimImageSettings& settings, unsigned channels, bool blueFirst);

    bool isNeutral() const { return m_kind == Kind::Nothing; }
    /// Changes a row of `width` pixels in place.
    void apply(std::uint8_t* row, unsigned width) const;

private:
    enum class Kind { Nothing, Grey, Tables, Matrix };

    void applyMatrix(std::uint8_t* row, unsigned width) const;

    Kind m_kind;
    std::array<PSimTone, 3> m_tones{};
    std::array<std::array<int, 3>, 3> m_matrix{}; ///< in 1/1024
};
