// SPDX-License-Identifier: MIT
#include <toupcam/sim/frame/PSimGeometry.h>

#include <algorithm>
#include <cstdint>

namespace {

constexpr unsigned sizeStep = 4;
constexpr unsigned offsetStep = 2;

bool fitsAlong(unsigned offset, unsigned length, unsigned limit) {
    // 64 bits: a client may pass anything.
    return length >= sizeStep && length % sizeStep == 0 && offset % offsetStep == 0 &&
           std::uint64_t{offset} + length <= limit;
}

unsigned scaledBy(unsigned length, unsigned from, unsigned to) {
    return unsigned(std::uint64_t{length} * to / from);
}

struct Span {
    unsigned offset;
    unsigned length;
};

Span scaledSpan(Span span, unsigned from, unsigned to) {
    const unsigned length =
        std::max(sizeStep, scaledBy(span.length, from, to) / sizeStep * sizeStep);
    const unsigned offset = std::min(scaledBy(span.offset, from, to), to - length);
    return {offset / offsetStep * offsetStep, length};
}

} // namespace

bool PSimRegion::fits(const PSimSize& size) const {
    return *this == whole(size) ||
           (fitsAlong(x, width, size.width) && fitsAlong(y, height, size.height));
}

PSimRegion PSimRegion::scaled(const PSimSize& from, const PSimSize& to) const {
    if (from == to)
        return *this;
    if (*this == whole(from))
        return whole(to);
    const Span across = scaledSpan({x, width}, from.width, to.width);
    const Span down = scaledSpan({y, height}, from.height, to.height);
    return {across.offset, down.offset, across.length, down.length};
}

PSimOrientation PSimGeometry::orientation() const {
    const bool turnedOver = rotation == 180 || rotation == 270;
    const bool exchanged = rotation == 90 || rotation == 270;
    // A quarter turn clockwise exchanges columns and rows and then mirrors from left to right, so
    // that a flip across the sensor's rows becomes one across the picture's columns.
    if (exchanged)
        return {true, vFlip == turnedOver, hFlip != turnedOver};
    return {false, hFlip != turnedOver, vFlip != turnedOver};
}

PSimSize PSimGeometry::finalSize() const {
    const PSimSize size = binnedSize();
    return orientation().exchanged ? PSimSize{size.height, size.width} : size;
}

bool PSimGeometry::isPlain(const PSimSize& sensor) const {
    const PSimOrientation turned = orientation();
    return region == PSimRegion::whole(sensor) && binning == 1 && !turned.exchanged &&
           !turned.mirroredX && !turned.mirroredY;
}
