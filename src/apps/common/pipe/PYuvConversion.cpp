// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PYuvConversion.h>

#include <algorithm>

namespace {

using Chroma = PYuvConversion::Chroma;

// Recommendation ITU-R BT.601-7, section 2.5.1: luma is 0.299 red + 0.587 green + 0.114 blue, and
// section 2.5.3: of the 8-bit codes luma has 219 steps above 16, the differences 224 around 128.
// With primaries from 0 to 255, as integers with `bits` binary places.
constexpr int bits = 16;
constexpr double red = 0.299;
constexpr double green = 0.587;
constexpr double blue = 0.114;
constexpr double lumaSteps = 219.0 / 255;
constexpr double chromaSteps = 224.0 / 255;

constexpr int toFixed(double factor) {
    return int(factor * (1 << bits) + (factor < 0 ? -0.5 : 0.5));
}

/// The factors of one sample.
struct Factors {
    int red;
    int green;
    int blue;
};

constexpr Factors lumaFactors{toFixed(red * lumaSteps), toFixed(green* lumaSteps),
                              toFixed(blue* lumaSteps)};
// The factors of a difference add up to 0, so that greys have no colour: the middle one is what
// rounding the others leaves.
constexpr int half = toFixed(chromaSteps / 2);
constexpr int redInBlue = toFixed(-red / (1 - blue) * chromaSteps / 2);
constexpr int blueInRed = toFixed(-blue / (1 - red) * chromaSteps / 2);
constexpr Factors blueFactors{redInBlue, -half - redInBlue, half};
constexpr Factors redFactors{half, -half - blueInRed, blueInRed};

/// One pixel, or the sum of several.
struct Primaries {
    int red;
    int green;
    int blue;
};

Primaries operator+(const Primaries& a, const Primaries& b) {
    return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}

/// A sample of the mean of 2^shift pixels, above `zero`, rounded.
template <int shift>
unsigned char toSample(const Factors& factors, const Primaries& sum, int zero) {
    constexpr int places = bits + shift;
    const int value = factors.red * sum.red + factors.green * sum.green + factors.blue * sum.blue;
    return static_cast<unsigned char>((value + (zero << places) + (1 << (places - 1))) >> places);
}

/// Where the bytes of a pixel are.
template <int size, int redAt, int greenAt, int blueAt>
struct Layout {
    static Primaries at(const unsigned char* row, std::size_t x) {
        const unsigned char* const pixel = row + x * size;
        return {pixel[redAt], pixel[greenAt], pixel[blueAt]};
    }
};

/// The image's memory, and its size in pixels.
struct Source {
    const unsigned char* pixels;
    std::size_t rowBytes;
    std::size_t width;
    std::size_t height;

    const unsigned char* row(std::size_t y) const { return pixels + y * rowBytes; }
};

std::size_t halved(std::size_t length) {
    return (length + 1) / 2;
}

template <typename Pixels>
void writeLuma(const Source& source, unsigned char* luma) {
    for (std::size_t y = 0; y < source.height; ++y) {
        const unsigned char* const row = source.row(y);
        for (std::size_t x = 0; x < source.width; ++x)
            *luma++ = toSample<0>(lumaFactors, Pixels::at(row, x), 16);
    }
}

template <typename Pixels>
void writeChroma(const Source& source, unsigned char* blues, unsigned char* reds) {
    for (std::size_t y = 0; y < source.height; ++y) {
        const unsigned char* const row = source.row(y);
        for (std::size_t x = 0; x < source.width; ++x) {
            const Primaries pixel = Pixels::at(row, x);
            *blues++ = toSample<0>(blueFactors, pixel, 128);
            *reds++ = toSample<0>(redFactors, pixel, 128);
        }
    }
}

/// The last row or column of an odd number counts twice, which leaves the mean as it is.
template <typename Pixels>
void writeQuarterChroma(const Source& source, unsigned char* blues, unsigned char* reds) {
    for (std::size_t y = 0; y < source.height; y += 2) {
        const unsigned char* const upper = source.row(y);
        const unsigned char* const lower = source.row(std::min(y + 1, source.height - 1));
        for (std::size_t x = 0; x < source.width; x += 2) {
            const std::size_t next = std::min(x + 1, source.width - 1);
            const Primaries sum = Pixels::at(upper, x) + Pixels::at(upper, next) +
                                  Pixels::at(lower, x) + Pixels::at(lower, next);
            *blues++ = toSample<2>(blueFactors, sum, 128);
            *reds++ = toSample<2>(redFactors, sum, 128);
        }
    }
}

std::size_t chromaSize(const PImageHeader& header, Chroma chroma) {
    const auto width = std::size_t(header.width());
    const auto height = std::size_t(header.height());
    return chroma == Chroma::Each ? width * height : halved(width) * halved(height);
}

template <typename Pixels>
void writePlanes(const Source& source, Chroma chroma, std::size_t chromaBytes,
                 unsigned char* planes) {
    unsigned char* const blues = planes + source.width * source.height;
    writeLuma<Pixels>(source, planes);
    if (chroma == Chroma::Each)
        writeChroma<Pixels>(source, blues, blues + chromaBytes);
    else
        writeQuarterChroma<Pixels>(source, blues, blues + chromaBytes);
}

} // namespace

std::size_t PYuvConversion::planesSize(const PImageHeader& header, Chroma chroma) {
    return std::size_t(header.width()) * std::size_t(header.height()) +
           2 * chromaSize(header, chroma);
}

void PYuvConversion::convert(const PImage& image, Chroma chroma, unsigned char* planes) {
    const PImageHeader header = image.header();
    const Source source{image.rawData(PDIP::AccessMode::Read).constData(), header.bytesPerLine(),
                        std::size_t(header.width()), std::size_t(header.height())};
    const std::size_t chromaBytes = chromaSize(header, chroma);
    switch (header.format()) {
    case PDIP::ColorFormat::Bgr:
        return writePlanes<Layout<3, 2, 1, 0>>(source, chroma, chromaBytes, planes);
    case PDIP::ColorFormat::BgrX:
        return writePlanes<Layout<4, 2, 1, 0>>(source, chroma, chromaBytes, planes);
    case PDIP::ColorFormat::Xrgb:
        return writePlanes<Layout<4, 0, 1, 2>>(source, chroma, chromaBytes, planes);
    case PDIP::ColorFormat::Gray:
        return writePlanes<Layout<1, 0, 0, 0>>(source, chroma, chromaBytes, planes);
    }
}
