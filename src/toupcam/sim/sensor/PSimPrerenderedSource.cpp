// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimPrerenderedSource.h>

#include <toupcam/sim/processing/PSimProcessor.h>
#include <toupcam/sim/processing/PSimToneStage.h>

#include <QRgb>
#include <algorithm>

namespace {

// The rows of a region of an existing picture.
class RegionRows : public PSimRows {
public:
    RegionRows(const std::uint8_t* pixels, const PSimPicture& form, const PSimRegion& region)
        : m_from(pixels + region.y * form.stride() + std::size_t{region.x} * form.bits / 8)
        , m_stride(form.stride())
        , m_bytes(std::size_t{region.width} * form.bits / 8) {}

    void next(std::uint8_t* out) override {
        std::copy_n(m_from, m_bytes, out);
        m_from += m_stride;
    }

private:
    const std::uint8_t* m_from;
    const std::size_t m_stride;
    const std::size_t m_bytes;
};

} // namespace

/// A picture of the whole sensor, without pixels.
PSimPicture PSimPrerenderedSource::toForm(const PSimShot& shot) const {
    const PSimResolution& size = m_spec->resolutions[shot.resolution];
    PSimPicture form;
    form.width = size.width;
    form.height = size.height;
    form.bits = m_spec->bits;
    form.blueFirst = shot.blueFirst;
    return form;
}

void PSimPrerenderedSource::take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) {
    const PSimPicture form = toForm(shot);
    const Pictures& pictures = picturesFor(shot, form);
    const Ready& ready = pictures[frame % pictures.size()];
    if (!isAsItIs(shot, form)) {
        RegionRows rows(ready.pixels.data(), form, shot.geometry.region);
        simProcess(rows, form.bits, shot, picture);
        return;
    }
    picture.width = form.width;
    picture.height = form.height;
    picture.bits = form.bits;
    picture.blueFirst = form.blueFirst;
    picture.means = ready.means;
    picture.pixels = ready.pixels.data();
}

bool PSimPrerenderedSource::isAsItIs(const PSimShot& shot, const PSimPicture& form) const {
    return isFixed() ||
           (shot.geometry.isPlain({form.width, form.height}) &&
            PSimToneStage(shot.imageSettings, form.bits / 8, form.blueFirst).isNeutral());
}

PSimPrerenderedSource::Ready PSimPrerenderedSource::make(unsigned index,
                                                         const PSimPicture& form) const {
    Ready ready;
    ready.pixels.resize(form.bytes());
    paint(index, form, ready.pixels.data());
    PSimMeter meter({form.width, form.height}, form.bits / 8);
    for (unsigned y = 0; y < form.height; ++y)
        meter.add(y, ready.pixels.data() + y * form.stride());
    ready.means = meter.means(form.blueFirst);
    return ready;
}

const PSimPrerenderedSource::Pictures& PSimPrerenderedSource::picturesFor(const PSimShot& shot,
                                                                          const PSimPicture& form) {
    const std::lock_guard lock(m_mutex);
    Pictures& ready = m_pictures[{shot.resolution, shot.blueFirst}];
    while (ready.size() < count())
        ready.push_back(make(unsigned(ready.size()), form));
    return ready;
}

void PSimPatchesSource::paint(unsigned /*index*/, const PSimPicture& form,
                              std::uint8_t* out) const {
    constexpr QRgb colours[3] = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)};
    for (unsigned patch = 0; patch < 3; ++patch) {
        const QRgb colour = colours[patch];
        const auto red = std::uint8_t(qRed(colour));
        const auto blue = std::uint8_t(qBlue(colour));
        const std::uint8_t channels[3] = {form.blueFirst ? blue : red, std::uint8_t(qGreen(colour)),
                                          form.blueFirst ? red : blue};
        const unsigned left = form.width * (1 + 4 * patch) / 12;
        const unsigned right = form.width * (3 + 4 * patch) / 12;
        for (unsigned y = form.height / 4; y < form.height * 3 / 4; ++y) {
            std::uint8_t* row = out + y * form.stride();
            for (unsigned x = left; x < right; ++x) {
                if (form.bits == 8)
                    row[x] = std::uint8_t(qGray(colour));
                else
                    std::copy(channels, channels + 3, row + std::size_t{x} * 3);
            }
        }
    }
}

void PSimRingSource::paint(unsigned index, const PSimPicture& form, std::uint8_t* out) const {
    constexpr unsigned levels = 256;
    const std::size_t channels = form.bits / 8;
    // All rows are parts of one ramp, each a pixel further along than the row above.
    std::vector<std::uint8_t> ramp((form.width + levels) * channels);
    for (std::size_t i = 0; i < ramp.size(); ++i)
        ramp[i] = std::uint8_t(i / channels);
    for (unsigned y = 0; y < form.height; ++y) {
        const std::size_t first = (y + 16 * index) % levels;
        std::copy_n(ramp.data() + first * channels, form.width * channels, out + y * form.stride());
    }
    out[0] = std::uint8_t(index);
}
