// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/sensor/PSimFlicker.h>
#include <toupcam/sim/sensor/PSimImageSource.h>
#include <toupcam/sim/sensor/PSimLight.h>

#include <map>
#include <mutex>

/// A specimen or a picture seen through the sensor model, with exposure, gain and noise.
class PSimSensorSource : public PSimImageSource {
public:
    PSimSensorSource(std::shared_ptr<const PSimCameraSpec> spec, std::uint64_t seed);

    void take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) override;
    bool isExposed() const override { return true; }

private:
    struct Entry {
        std::size_t file = 0;
        bool blueFirst = false;
        std::shared_ptr<const PSimLight> light;
    };

    PSimFlicker makeFlicker(const PSimShot& shot, std::uint64_t microseconds) const;
    std::shared_ptr<const PSimLight> lightFor(const PSimShot& shot, std::uint64_t frame);
    PSimLight makeLight(unsigned resolution, std::size_t file) const;
    PSimLight specimen(unsigned resolution, std::size_t file) const;

    std::shared_ptr<const PSimCameraSpec> m_spec;
    std::uint64_t m_seed;
    std::mutex m_mutex;                 // guards m_lights
    std::map<unsigned, Entry> m_lights; // by resolution
};
