// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <vector>

/// Rows of pictures as stored in files: grey, or red, green, blue, without padding. Any thread.
namespace PPackedRows {

/// 1 for Grayscale8, else 3.
int sampleCount(const QImage& picture);

/// The picture in a format that pack() takes: the picture itself, without a copy, if it is
/// Grayscale8, RGB888 or BGR888. Throws std::bad_alloc.
QImage packable(const QImage& picture);

/// The rows from `first` on, packed: copied to the buffer, or in the picture if they are already
/// packed there. Valid until picture or buffer changes. Throws std::bad_alloc.
const uchar* pack(const QImage& packable, int first, int rows, std::vector<uchar>& buffer);

} // namespace PPackedRows
