// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureTags.h>

#include <QByteArray>
#include <QImage>
#include <QString>

/// Encodes pictures as TIFF: 8 bits per sample, grey or RGB, uncompressed, little-endian. Uses
/// libtiff itself, because Qt's TIFF writer needs a plugin and writes no description. Any thread.
class PTiffEncoder {
public:
    /// The file's bytes, with the text (as UTF-8) in the tag ImageDescription, and these tags.
    /// Empty if the picture is empty, too large for the format (4 GiB), or refused by libtiff.
    /// Throws std::bad_alloc.
    static QByteArray encode(const QImage& image, const QString& description,
                             const PPictureTags& picture = {});
};
