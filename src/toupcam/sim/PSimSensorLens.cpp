// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimSensorLens.h>

#include <toupcam/sim/PSimRandom.h>

#include <cmath>

PSimSensorLens::PSimSensorLens(std::shared_ptr<const PSimCameraSpec> spec, std::uint64_t seed)
    : m_spec(std::move(spec))
    , m_seed(seed)
    , m_sensor(m_spec->sensor, PSimRandom::mix(seed)) {
}

void PSimSensorLens::take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) {
    const std::shared_ptr<const PSimLight> light = lightFor(shot, frame);
    picture.width = light->width - 2 * light->margin;
    picture.height = light->height - 2 * light->margin;
    picture.bits = 8 * light->channels;
    picture.blueFirst = shot.blueFirst;
    // The stage drifts slowly along a closed figure: looking at another part of the same light
    // costs nothing.
    const double turn = 6.283185307179586 * static_cast<double>(frame) / 900.0;
    const double reach = light->margin;
    const auto x = static_cast<unsigned>(std::lround(reach * (1.0 + std::sin(turn))));
    const auto y = static_cast<unsigned>(std::lround(reach * (1.0 + std::sin(2.0 * turn))));
    std::uint8_t* out = picture.ownPixels();
    m_sensor.expose(*light, x, y, picture.width, picture.height, shot, frame, out,
                    picture.stride());
}

std::shared_ptr<const PSimLight> PSimSensorLens::lightFor(const PSimShot& shot,
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
        entry.light.reset(); // before the next is made: two of them would be a lot of memory
        *light = makeLight(shot.resolution, file);
        if (shot.blueFirst)
            light->swapColours();
    }
    entry = {file, shot.blueFirst, std::move(light)};
    return entry.light;
}

PSimLight PSimSensorLens::makeLight(unsigned resolution, std::size_t file) const {
    const PSimResolution& size = m_spec->resolutions[resolution];
    const unsigned channels = m_spec->bits / 8;
    if (m_spec->source.kind == PSimSourceSpec::Kind::Picture)
        return picturedSpecimen(m_spec->source.pictures[file], size.width, size.height, channels);
    return simulatedSpecimen(m_spec->source, size.width, size.height, channels, m_seed);
}
