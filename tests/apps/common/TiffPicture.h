// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// A small picture with pixels of every colour, one of which contains the number (at most 255).
inline QImage tiffPicture(QImage::Format format, int number = 0) {
    QImage image(3, 2, format); // rows of 9 bytes: padded in memory, not in the file
    image.fill(Qt::black);
    image.setPixelColor(0, 0, QColor(255, 0, 0));
    image.setPixelColor(1, 0, QColor(0, 255, 0));
    image.setPixelColor(2, 1, QColor(number, number, 255));
    return image;
}
