// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimRandom.h>
#include <toupcam/sim/sensor/PSimNoiseField.h>
#include <toupcam/sim/sensor/PSimPlane.h>

/// Paints cultured cells as two fluorescent dyes: one in the nuclei, one in the fibres of the cell
/// bodies. The same at every resolution: lengths are in units of 1/1280 of the width. Used on one
/// thread.
class PSimCells {
public:
    PSimCells(unsigned width, unsigned height, std::uint64_t seed);

    /// Paints everything; once.
    void paint();

    const PSimPlane& nuclei() const { return m_nuclei; }
    const PSimPlane& fibres() const { return m_fibres; }

private:
    struct Cell {
        float x;
        float y;
        float size;
        float angle;
        float brightness;
    };

    void paintBody(const Cell& cell);
    void paintNucleus(const Cell& cell);

    float m_scale; ///< pixels a unit
    float m_unitsHigh;
    PSimNoiseField m_field;
    PSimRandom m_random;
    PSimPlane m_nuclei;
    PSimPlane m_fibres;
};
