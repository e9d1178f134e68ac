// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimLight.h>

#include <toupcam/sim/frame/PSimWhiteBalance.h>
#include <toupcam/sim/sensor/PSimCells.h>
#include <toupcam/sim/sensor/PSimTissue.h>

#include <QImage>
#include <QImageReader>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

using Curve = std::array<std::uint16_t, 256>; // share of light in 1/256 for each amount of stain

// Beer and Lambert: light falls off exponentially with the amount of stain.
Curve absorption(double density) {
    Curve curve{};
    for (std::size_t i = 0; i < curve.size(); ++i) {
        const double share = std::exp(-density * double(i) / 255.0);
        curve[i] = std::uint16_t(std::lround(256.0 * share));
    }
    return curve;
}

// Optical densities of the two stains for red, green and blue light: the directions are the usual
// stain vectors of haematoxylin and eosin (Ruifrok and Johnston 2001), the eosin's a little warmer.
constexpr double haematoxylinStain[3] = {1.55, 1.75, 0.72};
constexpr double eosinStain[3] = {0.12, 1.15, 0.50};
constexpr unsigned lampLight = 250; // light where there is no tissue

// The condenser lights the corners a little less.
std::vector<std::uint16_t> falloff(unsigned length) {
    std::vector<std::uint16_t> result(length);
    for (unsigned i = 0; i < length; ++i) {
        const double x = 2.0 * i / length - 1.0;
        result[i] = std::uint16_t(std::lround(256.0 * (1.0 - 0.055 * x * x)));
    }
    return result;
}

PSimLight emptyLight(unsigned width, unsigned height, unsigned channels, unsigned margin) {
    PSimLight light;
    light.margin = margin;
    light.width = width + 2 * margin;
    light.height = height + 2 * margin;
    light.channels = channels;
    light.values.resize(light.rowBytes() * light.height);
    return light;
}

void stainChannel(PSimLight& light, unsigned channel, const PSimTissue& tissue, unsigned colour) {
    const Curve nuclei = absorption(haematoxylinStain[colour]);
    const Curve eosin = absorption(eosinStain[colour]);
    const std::vector<std::uint16_t> across = falloff(light.width);
    const std::vector<std::uint16_t> down = falloff(light.height);
    for (unsigned y = 0; y < light.height; ++y) {
        const std::uint8_t* n = tissue.nuclei().row(y);
        const std::uint8_t* e = tissue.eosin().row(y);
        std::uint8_t* out = light.values.data() + y * light.rowBytes() + channel;
        const unsigned lamp = lampLight * down[y];
        for (unsigned x = 0; x < light.width; ++x) {
            const unsigned lit = (lamp * across[x]) >> 8;
            const unsigned passed = (unsigned(nuclei[n[x]]) * eosin[e[x]]) >> 8;
            out[std::size_t{x} * light.channels] = std::uint8_t((lit * passed) >> 16);
        }
    }
}

PSimLight tissueLight(PSimLight light, std::uint64_t seed) {
    PSimTissue tissue(light.width, light.height, seed);
    tissue.paint();
    constexpr unsigned green = 1; // a grey camera behind a green filter: the best contrast
    if (light.channels == 1) {
        stainChannel(light, 0, tissue, green);
    } else {
        for (unsigned colour = 0; colour < 3; ++colour)
            stainChannel(light, colour, tissue, colour);
    }
    return light;
}

// Share of each dye's light in red, green, blue and, last, on a grey sensor, in 1/256.
constexpr unsigned nucleiGlow[4] = {36, 70, 256, 150};
constexpr unsigned fibreGlow[4] = {20, 256, 50, 200};
constexpr unsigned haze = 5;

PSimLight fluorescenceLight(PSimLight light, std::uint64_t seed) {
    PSimCells cells(light.width, light.height, seed);
    cells.paint();
    for (unsigned y = 0; y < light.height; ++y) {
        const std::uint8_t* n = cells.nuclei().row(y);
        const std::uint8_t* f = cells.fibres().row(y);
        std::uint8_t* out = light.values.data() + y * light.rowBytes();
        for (std::size_t i = 0; i < light.rowBytes(); ++i) {
            const std::size_t x = i / light.channels;
            const std::size_t colour = light.channels == 1 ? 3 : i % 3;
            const unsigned glow =
                haze + ((n[x] * nucleiGlow[colour]) >> 8) + ((f[x] * fibreGlow[colour]) >> 8);
            out[i] = std::uint8_t(std::min(glow, 255U));
        }
    }
    return light;
}

QImage loadPicture(const QString& path) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        std::fprintf(stderr, "simulated SDK: cannot read picture \"%s\": %s\n", qPrintable(path),
                     qPrintable(reader.errorString()));
    return image;
}

} // namespace

void PSimLight::lightWith(double kelvin) {
    if (channels != 3 || kelvin == PSimWhiteBalance::neutralTemperature)
        return;
    const PSimWhiteBalance::Channels lamp = PSimWhiteBalance::lamp(kelvin);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = std::uint8_t(std::lround(lamp[i % 3] * values[i]));
}

void PSimLight::swapColours() {
    if (channels != 3)
        return;
    for (std::vector<std::uint8_t>* plane : {&values, &roots}) {
        for (std::size_t i = 0; i + 2 < plane->size(); i += 3)
            std::swap((*plane)[i], (*plane)[i + 2]);
    }
}

void PSimLight::computeRoots() {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const long root = std::lround(16.0 * std::sqrt(double(i)));
        table[i] = std::uint8_t(std::min(root, 255L));
    }
    roots.resize(values.size());
    std::transform(values.begin(), values.end(), roots.begin(),
                   [&table](std::uint8_t value) { return table[value]; });
}

PSimLight simulatedSpecimen(const PSimSourceSpec& source, unsigned width, unsigned height,
                            unsigned channels, std::uint64_t seed) {
    PSimLight light = emptyLight(width, height, channels, source.drift);
    if (source.kind == PSimSourceSpec::Kind::Flat)
        std::fill(light.values.begin(), light.values.end(),
                  std::uint8_t(std::lround(255.0 * source.level)));
    else if (source.kind == PSimSourceSpec::Kind::Fluorescence)
        light = fluorescenceLight(std::move(light), seed);
    else
        light = tissueLight(std::move(light), seed);
    return light;
}

PSimLight picturedSpecimen(const QString& path, unsigned width, unsigned height,
                           unsigned channels) {
    PSimLight light = emptyLight(width, height, channels, 0);
    const QImage image = loadPicture(path);
    if (image.isNull())
        return light;
    const QSize size{int(width), int(height)};
    const QImage filled =
        image.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QImage cut =
        filled.copy((filled.width() - size.width()) / 2, (filled.height() - size.height()) / 2,
                    size.width(), size.height());
    const QImage pixels =
        cut.convertToFormat(channels == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    for (unsigned y = 0; y < height; ++y)
        std::memcpy(light.values.data() + y * light.rowBytes(), pixels.constScanLine(int(y)),
                    light.rowBytes());
    return light;
}
