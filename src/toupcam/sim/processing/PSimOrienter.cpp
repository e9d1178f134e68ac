// SPDX-License-Identifier: MIT
#include <toupcam/sim/processing/PSimOrienter.h>

#include <algorithm>
#include <cstring>

namespace {

// Rows turned into columns are written in groups, so that each access to a row of the picture
// writes a whole cache line of it.
constexpr unsigned band = 32;

template <unsigned bytes>
void copyPixel(const std::uint8_t* from, std::uint8_t* to) {
    std::memcpy(to, from, bytes);
}

template <unsigned bytes>
void mirrorRow(const std::uint8_t* from, unsigned width, std::uint8_t* to) {
    const std::uint8_t* last = from + std::size_t{width} * bytes;
    for (unsigned x = 0; x < width; ++x, to += bytes)
        copyPixel<bytes>(last -= bytes, to);
}

// One column of `count` rows that are `stride` bytes apart becomes a piece of a row.
template <unsigned bytes>
void gatherColumn(const std::uint8_t* from, std::size_t stride, unsigned count, bool mirrored,
                  std::uint8_t* to) {
    for (unsigned i = 0; i < count; ++i)
        copyPixel<bytes>(from + i * stride, to + std::size_t{mirrored ? count - 1 - i : i} * bytes);
}

} // namespace

PSimOrienter::PSimOrienter(const PSimOrientation& orientation, const PSimSize& size,
                           PSimPicture& picture)
    : m_orientation(orientation)
    , m_size(size)
    , m_pixelBytes(picture.bits / 8)
    , m_stride(picture.stride())
    , m_out(picture.ownPixels()) {
    const std::size_t rowBytes = std::size_t{picture.width} * m_pixelBytes;
    for (unsigned y = 0; y < picture.height; ++y)
        std::memset(m_out + y * m_stride + rowBytes, 0, m_stride - rowBytes);
    if (!isDirect())
        m_band.resize(std::size_t{size.width} * m_pixelBytes * (orientation.exchanged ? band : 1));
}

std::uint8_t* PSimOrienter::target(unsigned y) const {
    return m_out + (m_orientation.mirroredY ? m_size.height - 1 - y : y) * m_stride;
}

std::uint8_t* PSimOrienter::line(unsigned y) {
    if (isDirect())
        return target(y);
    const unsigned place = m_orientation.exchanged ? y % band : 0;
    return m_band.data() + std::size_t{place} * m_size.width * m_pixelBytes;
}

void PSimOrienter::written(unsigned y) {
    if (m_orientation.exchanged) {
        if (y % band == band - 1 || y == m_size.height - 1)
            writeExchanged(y / band * band, y % band + 1);
    } else if (m_orientation.mirroredX) {
        writeMirrored(y);
    }
}

void PSimOrienter::writeMirrored(unsigned y) {
    const auto mirror = m_pixelBytes == 3 ? mirrorRow<3> : mirrorRow<1>;
    mirror(m_band.data(), m_size.width, target(y));
}

void PSimOrienter::writeExchanged(unsigned first, unsigned count) {
    const auto gather = m_pixelBytes == 3 ? gatherColumn<3> : gatherColumn<1>;
    const std::size_t bandStride = std::size_t{m_size.width} * m_pixelBytes;
    const bool mirrored = m_orientation.mirroredX;
    const unsigned left = mirrored ? m_size.height - first - count : first;
    for (unsigned x = 0; x < m_size.width; ++x) {
        const unsigned row = m_orientation.mirroredY ? m_size.width - 1 - x : x;
        gather(m_band.data() + std::size_t{x} * m_pixelBytes, bandStride, count, mirrored,
               m_out + row * m_stride + std::size_t{left} * m_pixelBytes);
    }
}
