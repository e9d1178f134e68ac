// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimSensorSource.h>

#include <toupcam/sim/frame/PSimRandom.h>
#include <toupcam/sim/processing/PSimProcessor.h>
#include <toupcam/sim/sensor/PSimSensor.h>

#include <cmath>

PSimSensorSource::PSimSensorSource(std::shared_ptr<const PSimCameraSpec> spec, std::uint64_t seed)
    : m_spec(std::move(spec))
    , m_seed(seed) {
}

void PSimSensorSource::take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) {
    const std::shared_ptr<const PSimLight> light = lightFor(shot, frame);
    // The stage drifts slowly along a closed figure: looking at another part of the same light
    // costs nothing.
    const double turn = 6.283185307179586 * double(frame) / 900.0;
    const double reach = light->margin;
    const auto x = unsigned(std::lround(reach * (1.0 + std::sin(turn))));
    const auto y = unsigned(std::lround(reach * (1.0 + std::sin(2.0 * turn))));
    const PSimRegion& region = shot.geometry.region;
    PSimSensor sensor(m_spec->sensor, *light, x + region.x, y + region.y, shot,
                      makeFlicker(shot, picture.microseconds),
                      PSimRandom::mix(PSimRandom::mix(m_seed) ^ PSimRandom::mix(frame)));
    simProcess(sensor, 8 * light->channels, shot, picture);
}

// The rows are read one after the other in the time of a frame at full speed.
PSimFlicker PSimSensorSource::makeFlicker(const PSimShot& shot, std::uint64_t microseconds) const {
    const PSimResolution& mode = m_spec->resolutions[shot.resolution];
    const double exposure = shot.exposureMs / 1000.0;
    const double start = double(microseconds) * 1e-6 - exposure;
    return {m_spec->source.mainsHz, exposure, start, 1.0 / (mode.framesPerSecond * mode.height)};
}

std::shared_ptr<const PSimLight> PSimSensorSource::lightFor(const PSimShot& shot,
                                                            std::uint64_t frame) {
    const PSimSourceSpec& source = m_spec->source;
    const std::size_t file =
        source.pictures.empty() ? 0 : (frame / source.framesEach) % source.pictures.size();
    const std::lock_guard lock(m_mutex);
    Entry& entry = m_lights[shot.resolution];
    if (entry.light && entry.file == file && entry.blueFirst == shot.blueFirst)
        return entry.light;
    auto light = std::make_shared<PSimLight>();
    if (entry.light && entry.file == file) {
        *light = *entry.light;
        light->swapColours();
    } else {
        entry.light.reset(); // before the next is created: two of them would need much memory
        *light = makeLight(shot.resolution, file);
        if (shot.blueFirst)
            light->swapColours();
    }
    entry = {file, shot.blueFirst, std::move(light)};
    return entry.light;
}

PSimLight PSimSensorSource::makeLight(unsigned resolution, std::size_t file) const {
    PSimLight light = specimen(resolution, file);
    light.lightWith(m_spec->source.lightKelvin);
    light.computeRoots();
    return light;
}

PSimLight PSimSensorSource::specimen(unsigned resolution, std::size_t file) const {
    const PSimResolution& size = m_spec->resolutions[resolution];
    const unsigned channels = m_spec->bits / 8;
    if (m_spec->source.kind == PSimSourceSpec::Kind::Picture)
        return picturedSpecimen(m_spec->source.pictures[file], size.width, size.height, channels);
    return simulatedSpecimen(m_spec->source, size.width, size.height, channels, m_seed);
}
