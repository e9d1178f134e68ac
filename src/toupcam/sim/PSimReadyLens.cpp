// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimReadyLens.h>

#include <QRgb>

void PSimReadyLens::take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) {
    const PSimResolution& size = m_spec->resolutions[shot.resolution];
    picture.width = size.width;
    picture.height = size.height;
    picture.bits = m_spec->bits;
    picture.blueFirst = shot.blueFirst;
    const Pictures& ready = picturesFor(shot, picture);
    picture.pixels = ready[frame % ready.size()].data();
}

const PSimReadyLens::Pictures& PSimReadyLens::picturesFor(const PSimShot& shot,
                                                          const PSimPicture& form) {
    const std::lock_guard lock(m_mutex);
    Pictures& ready = m_pictures[{shot.resolution, shot.blueFirst}];
    while (ready.size() < count()) {
        std::vector<std::uint8_t> picture(form.bytes());
        paint(static_cast<unsigned>(ready.size()), form, picture.data());
        ready.push_back(std::move(picture));
    }
    return ready;
}

void PSimPatchesLens::paint(unsigned /*index*/, const PSimPicture& form, std::uint8_t* out) const {
    constexpr QRgb colours[3] = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)};
    for (unsigned patch = 0; patch < 3; ++patch) {
        const QRgb colour = colours[patch];
        const auto red = static_cast<std::uint8_t>(qRed(colour));
        const auto blue = static_cast<std::uint8_t>(qBlue(colour));
        const std::uint8_t channels[3] = {form.blueFirst ? blue : red,
                                          static_cast<std::uint8_t>(qGreen(colour)),
                                          form.blueFirst ? red : blue};
        const unsigned left = form.width * (1 + 4 * patch) / 12;
        const unsigned right = form.width * (3 + 4 * patch) / 12;
        for (unsigned y = form.height / 4; y < form.height * 3 / 4; ++y) {
            std::uint8_t* row = out + y * form.stride();
            for (unsigned x = left; x < right; ++x) {
                if (form.bits == 8)
                    row[x] = static_cast<std::uint8_t>(qGray(colour));
                else
                    std::copy(channels, channels + 3, row + std::size_t{x} * 3);
            }
        }
    }
}

void PSimRingLens::paint(unsigned index, const PSimPicture& form, std::uint8_t* out) const {
    const unsigned channels = form.bits / 8;
    for (unsigned y = 0; y < form.height; ++y) {
        std::uint8_t* row = out + y * form.stride();
        for (unsigned x = 0; x < form.width * channels; ++x)
            row[x] = static_cast<std::uint8_t>(x / channels + y + 16 * index);
    }
    out[0] = static_cast<std::uint8_t>(index);
}
