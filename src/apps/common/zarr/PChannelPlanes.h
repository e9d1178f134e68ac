// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <vector>

/// The samples of one channel of a picture, 8 bits each, row after row without padding. Sees them
/// only.
struct PPlane {
    const uchar* samples = nullptr;
    int width = 0;
    int height = 0;

    std::size_t size() const { return std::size_t(width) * std::size_t(height); }
};

/// Takes pictures apart into their channels, and makes these smaller, in memory of its own that it
/// uses again. One thread.
class PChannelPlanes {
public:
    /// The channels of a picture: grey, or red, green and blue. Valid until the next call, or until
    /// the picture changes. Throws std::bad_alloc.
    const std::vector<PPlane>& split(const QImage& picture);

    /// A plane of half the size, each sample the mean of four; a last odd row or column is left
    /// out. Valid until the next call but one. Throws std::bad_alloc.
    PPlane half(const PPlane& plane);
    /// False for a plane with a single row or column.
    static bool canHalve(const QSize& size) { return size.width() > 1 && size.height() > 1; }

private:
    void splitColours(const QImage& picture);
    void copyGrey(const QImage& picture);

    QImage m_picture; ///< keeps the pixels that m_planes may view
    std::vector<PPlane> m_planes;
    std::vector<std::vector<uchar>> m_samples; ///< of m_planes
    std::vector<uchar> m_halves[2];            ///< the last one made is read for the next
    int m_nextHalf = 0;
};
