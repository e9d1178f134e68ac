// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimRandom.h>
#include <toupcam/sim/sensor/PSimNoiseField.h>
#include <toupcam/sim/sensor/PSimPlane.h>

#include <vector>

/// Paints a section of glandular tissue as two stains: one for nuclei (haematoxylin), one for all
/// else (eosin). The section is the same at every resolution: lengths are in units of 1/5440 of the
/// width. Used on one thread.
class PSimTissue {
public:
    PSimTissue(unsigned width, unsigned height, std::uint64_t seed);

    /// Paints everything; once.
    void paint();

    const PSimPlane& nuclei() const { return m_nuclei; }
    const PSimPlane& eosin() const { return m_eosin; }

private:
    struct Gland {
        float x;
        float y;
        float radius;
        float phase2; ///< of the two- and three-fold deviation from a circle
        float phase3;
    };
    struct Place {
        float depth; ///< 0 in a gland's centre, 1 at its edge, larger outside
        float angle; ///< seen from that gland's centre
        const Gland* gland;
    };
    struct Stains {
        float nuclei;
        float eosin;
    };

    void placeGlands();
    Place locate(float u, float v) const;
    float coverage(float u, float v) const;
    float displacement(float u, float v) const;
    float fibreAngle(float u, float v) const;
    Stains glandStains(const Place& place, float u, float v) const;
    Stains stromaStains(float u, float v) const;
    Stains stainsAt(float u, float v) const;
    void paintGround();
    void paintGlandCells(const Gland& gland);
    void paintStromaCells();
    void paintGoblet(float u, float v, float size);
    void paintNucleus(float u, float v, float first, float second, float angle, float strength);

    float m_scale; ///< pixels a unit
    float m_unitsHigh;
    PSimNoiseField m_field;
    PSimRandom m_random;
    std::vector<Gland> m_glands;
    PSimPlane m_nuclei;
    PSimPlane m_eosin;
};
