// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// An image as rows of pixels.

#include <PDip/PImage.h>
#include <PDip/dip_exception.h>

#include <cstddef>
#include <iterator>

namespace PDIP {

/// One pixel of four samples in memory order; which colour comes first depends on the image's
/// format (see ColorFormat).
template <typename T>
struct PixelXRGB {
    T first;
    T second;
    T third;
    T x;
};

/// Access to an image as rows of pixels. Opening it may throw std::bad_alloc (see PImage::rawData).
/// The image must outlive the raster and must not be assigned to meanwhile. One thread.
template <typename Pixel>
class RasterT {
public:
    /// Iterates over all pixels row by row, skipping the padding at the end of rows.
    class iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Pixel;
        using difference_type = std::ptrdiff_t;
        using pointer = Pixel*;
        using reference = Pixel&;

        iterator(const RasterT* raster, long row)
            : m_raster(raster)
            , m_row(row) {
            openRow();
        }
        reference operator*() const { return *m_pixel; }
        pointer operator->() const { return m_pixel; }
        iterator& operator++() {
            if (++m_pixel == m_rowEnd) {
                ++m_row;
                openRow();
            }
            return *this;
        }
        friend bool operator==(const iterator& a, const iterator& b) {
            return a.m_pixel == b.m_pixel;
        }
        friend bool operator!=(const iterator& a, const iterator& b) { return !(a == b); }

    private:
        void openRow() {
            const bool inside = m_row < m_raster->height();
            m_pixel = inside ? m_raster->row(m_row) : nullptr;
            m_rowEnd = inside ? m_pixel + m_raster->width() : nullptr;
        }

        const RasterT* m_raster;
        long m_row;
        Pixel* m_pixel = nullptr;
        Pixel* m_rowEnd = nullptr;
    };

    /// Opens the image. Throws dip_exception if the image's pixels are not of Pixel's size.
    RasterT(PImage& image, AccessMode mode)
        : m_header(image.header())
        , m_mode(mode) {
        if (m_header.isValid() && m_header.bytesPerPixel() != sizeof(Pixel))
            throw dip_exception("pixel type does not fit the image's format");
        // The const pointer is cast back only after the check in begin().
        m_data = const_cast<unsigned char*>(image.rawData(mode).constData());
    }

    long width() const { return m_header.width(); }
    long height() const { return m_header.height(); }

    /// Iterators for changing pixels. Throws dip_exception("invalid mode for access") if the raster
    /// was opened for reading.
    iterator begin() const {
        if (m_mode == AccessMode::Read)
            throw dip_exception("invalid mode for access");
        return iterator(this, 0);
    }
    iterator end() const { return iterator(this, height()); }

private:
    Pixel* row(long index) const {
        return reinterpret_cast<Pixel*>(m_data + std::size_t(index) * m_header.bytesPerLine());
    }

    PImageHeader m_header;
    AccessMode m_mode;
    unsigned char* m_data = nullptr;
};

} // namespace PDIP
