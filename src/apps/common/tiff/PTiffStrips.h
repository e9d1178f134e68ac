// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <tiffio.h>

#include <vector>

/// The pixels of a picture as the strips of a TIFF file. The thread that writes the file.
namespace PTiffStrips {

/// The number of rows in a strip, except for the last one.
int rowCount(const QImage& picture);

/// Writes all strips, packed as PPackedRows does, to the directory being written; the buffer is
/// reused from picture to picture. False if libtiff refuses. Throws std::bad_alloc.
bool write(TIFF* tiff, const QImage& picture, std::vector<uchar>& buffer);

} // namespace PTiffStrips
