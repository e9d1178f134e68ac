// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimRandom.h>
#include <toupcam/sim/frame/PSimRows.h>
#include <toupcam/sim/frame/PSimShot.h>
#include <toupcam/sim/scene/PSimScene.h>
#include <toupcam/sim/sensor/PSimExposeRow.h>
#include <toupcam/sim/sensor/PSimFlicker.h>
#include <toupcam/sim/sensor/PSimLight.h>

/// One exposure of the sensor. A pixel with light L collects e = electronsPerMs x time x L / 255
/// electrons, at most the full well, with a variance of e (photon shot noise) plus the square of
/// the read noise; it reads offset + e x gain / electronsPerCount counts, at most 255. So the
/// variance of a pixel over many frames is a straight line over its mean with the slope gain /
/// electronsPerCount: the photon-transfer curve. Dark current adds its own electrons, independent
/// of the light, with their own noise. Used on one thread.
class PSimSensor : public PSimRows {
public:
    /// The part of the light that begins at pixel x, y of it and is as large as the shot's region.
    /// `flicker` is the lamp's; `seed` chooses the noise: the same seed gives the same picture.
    /// Spec, light and shot must outlive this.
    PSimSensor(const PSimSensorSpec& spec, const PSimLight& light, unsigned x, unsigned y,
               const PSimShot& shot, const PSimFlicker& flicker, std::uint64_t seed);

    void next(std::uint8_t* out) override;

private:
    const PSimSensorSpec& m_spec;
    const PSimLight& m_light;
    const PSimShot& m_shot;
    const PSimFlicker m_flicker;
    PSimRowFactors m_factors;
    unsigned m_row; ///< the next one, of the sensor
    const std::size_t m_rowBytes;
    std::size_t m_from; ///< of the next row, in the light
    PSimRandom m_random;
};
