// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <QByteArray>

#include <cstring>
#include <new>
#include <vector>

/// An image whose rows have these bytes; the padding after each is made of "*".
inline PImage makePixelImage(long width, PDIP::ColorFormat format,
                             const std::vector<QByteArray>& rows) {
    PImage image;
    if (!image.create(width, long(rows.size()), format))
        throw std::bad_alloc();
    const PDIP::ImageRawData pixels = image.rawData(PDIP::AccessMode::Write);
    std::memset(pixels.data(), '*', pixels.size());
    for (std::size_t y = 0; y < rows.size(); ++y)
        std::memcpy(pixels.data() + y * image.bytesPerLine(), rows[y].constData(),
                    std::size_t(rows[y].size()));
    return image;
}

/// An image of this size whose pixels all have these bytes.
inline PImage makeFlatImage(long width, long height, PDIP::ColorFormat format,
                            const QByteArray& pixel) {
    return makePixelImage(width, format,
                          std::vector<QByteArray>(std::size_t(height), pixel.repeated(int(width))));
}
