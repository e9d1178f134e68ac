// SPDX-License-Identifier: MIT
#include <PDip/PImageHeader.h>

#include <PDip/PImageSizeLimit.h>

namespace {

/// a * b, or 0 if that is not below the limit.
std::size_t limitedProduct(std::size_t a, std::size_t b) {
    std::size_t product = 0;
    return __builtin_mul_overflow(a, b, &product) || product >= PImageSizeLimit ? 0 : product;
}

std::size_t paddedRow(std::size_t bytes) {
    return (bytes + 3) / 4 * 4;
}

} // namespace

PImageHeader::PImageHeader(long width, long height, PDIP::ColorFormat format, PDIP::Channel channel,
                           PDIP::Origin origin, PDIP::RowsAlign align)
    : m_width(width)
    , m_height(height)
    , m_format(format)
    , m_channel(channel)
    , m_origin(origin)
    , m_align(align) {
}

std::size_t PImageHeader::bytesPerPixel() const {
    switch (m_format) {
    case PDIP::ColorFormat::Gray:
        return 1;
    case PDIP::ColorFormat::Bgr:
        return 3;
    case PDIP::ColorFormat::Xrgb:
    case PDIP::ColorFormat::BgrX:
        return 4;
    }
    return 0;
}

std::size_t PImageHeader::bytesPerLine() const {
    return isValid() ? paddedRow(std::size_t(m_width) * bytesPerPixel()) : 0;
}

std::size_t PImageHeader::dataSize() const {
    // Only one channel type, origin and alignment exist: sizes for any other value would be a
    // guess.
    if (m_width <= 0 || m_height <= 0 || m_channel != PDIP::Channel::UInt8 ||
        m_origin != PDIP::Origin::TopLeft || m_align != PDIP::RowsAlign::FourBytes)
        return 0;
    const std::size_t row = limitedProduct(std::size_t(m_width), bytesPerPixel());
    return limitedProduct(paddedRow(row), std::size_t(m_height));
}

bool PImageHeader::isValid() const {
    return dataSize() > 0;
}

bool operator==(const PImageHeader& a, const PImageHeader& b) {
    return a.m_width == b.m_width && a.m_height == b.m_height && a.m_format == b.m_format &&
           a.m_channel == b.m_channel && a.m_origin == b.m_origin && a.m_align == b.m_align;
}
