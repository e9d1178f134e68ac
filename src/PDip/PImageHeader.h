// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PDipTypes.h>

#include <PCore/PExport.h>

#include <cstddef>

/// Geometry and format of an image. A value type; any thread.
class PCD_EXPORT PImageHeader {
public:
    PImageHeader() = default;
    PImageHeader(long width, long height, PDIP::ColorFormat format,
                 PDIP::Channel channel = PDIP::Channel::UInt8,
                 PDIP::Origin origin = PDIP::Origin::TopLeft,
                 PDIP::RowsAlign align = PDIP::RowsAlign::FourBytes);

    long width() const { return m_width; }
    long height() const { return m_height; }
    PDIP::ColorFormat format() const { return m_format; }
    PDIP::Channel channelType() const { return m_channel; }
    PDIP::Origin origin() const { return m_origin; }
    void setFormat(PDIP::ColorFormat format) { m_format = format; }

    /// Bytes of one pixel; 0 for a format that does not exist.
    std::size_t bytesPerPixel() const;
    /// Bytes from one row to the next, padding included; 0 if the header is not valid.
    std::size_t bytesPerLine() const;
    /// Bytes of all rows; 0 if the header is not valid. Never overflows.
    std::size_t dataSize() const;
    /// True if width and height are positive, the format, channel type, origin and alignment exist
    /// and the size is below 2^62 bytes.
    bool isValid() const;

    friend PCD_EXPORT bool operator==(const PImageHeader& a, const PImageHeader& b);
    friend bool operator!=(const PImageHeader& a, const PImageHeader& b) { return !(a == b); }

private:
    long m_width = 0;
    long m_height = 0;
    PDIP::ColorFormat m_format = PDIP::ColorFormat::Gray;
    PDIP::Channel m_channel = PDIP::Channel::UInt8;
    PDIP::Origin m_origin = PDIP::Origin::TopLeft;
    PDIP::RowsAlign m_align = PDIP::RowsAlign::FourBytes;
};
