// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/PSimLight.h>
#include <toupcam/sim/PSimScene.h>
#include <toupcam/sim/PSimSettings.h>

/// The sensor model: a pixel with light L collects e = electronsPerMs x time x L / 255 electrons,
/// at most the full well, with a variance of e (photon shot noise) plus the square of the read
/// noise; it reads offset + e x gain / electronsPerCount counts, at most 255. So the variance of a
/// pixel over many frames is a straight line over its mean with the slope gain / electronsPerCount:
/// the photon-transfer curve. Immutable, callable from any thread.
class PSimSensor {
public:
    PSimSensor(const PSimSensorSpec& spec, std::uint64_t seed);

    /// Takes a picture of `width` x `height` pixels of the light, beginning at pixel x, y of it.
    /// `frame` chooses the noise: the same number gives the same picture. Rows of `out` are
    /// `stride` bytes apart.
    void expose(const PSimLight& light, unsigned x, unsigned y, unsigned width, unsigned height,
                const PSimShot& shot, std::uint64_t frame, std::uint8_t* out,
                std::size_t stride) const;

private:
    PSimSensorSpec m_spec;
    std::uint64_t m_seed;
};
