// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureTags.h>

#include <QByteArray>

#include <tiffio.h>

/// The tags of an uncompressed picture with 8 bits per sample, as in this project's TIFF files. A
/// value type; the thread that writes the file.
struct PTiffTags {
    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    int samples = 1; ///< 1: grey, 3: red, green, blue
    int rowsPerStrip = 0;
    QByteArray description; ///< for the tag ImageDescription; empty: none
    PPictureTags picture = {};

    /// Sets them in the directory being written. False if libtiff refuses.
    bool writeTo(TIFF* tiff) const;
};
