// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureTags.h>

#include <tiffio.h>

/// The tags of a picture as TIFF and EXIF store them. The thread that writes the file.
class PTiffExif {
public:
    /// Writes an EXIF directory, then sets the tags of TIFF and a reference to it in the directory
    /// that is created next; must come before any other tag of that one. Without tags it does
    /// nothing and returns true; false if libtiff refuses.
    static bool writeTo(TIFF* tiff, const PPictureTags& tags);

    /// The same as a block for formats that are not TIFF; empty without tags. Throws
    /// std::bad_alloc.
    static QByteArray block(const PPictureTags& tags);
};
