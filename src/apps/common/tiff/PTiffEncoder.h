// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureTags.h>

#include <QImage>
#include <QString>

class QFileDevice;

/// Writes pictures as TIFF: 8 bits per sample, uncompressed, little-endian; Grayscale8 becomes
/// grey, all other formats RGB, whatever the picture shows. Uses libtiff itself, because Qt's TIFF
/// writer needs a plugin and writes no description. Any thread.
class PTiffEncoder {
public:
    /// Writes the picture to a new file, open without a buffer, with the text (as UTF-8) in the tag
    /// ImageDescription, and these tags. Strip by strip: the pixels are not collected in memory.
    /// False if the file cannot be written, with the reason in its errorString(), or if the picture
    /// is empty, too large for the format (4 GiB), or refused by libtiff. Throws std::bad_alloc.
    static bool write(QFileDevice& file, const QImage& image, const QString& description,
                      const PPictureTags& picture = {});
};
