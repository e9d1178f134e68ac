// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureNotes.h>

#include <QByteArray>
#include <QImage>

/// Encodes pictures as PNG: 8 bits per sample, grey, RGB or RGBA. Uses libpng itself, because Qt's
/// PNG writer chooses neither filter nor strategy, which decide how long a frame takes. Any thread.
class PPngEncoder {
public:
    /// What the compression is set up for; the pixels are the same with both.
    enum class Content {
        Frame,  ///< a frame of a camera: noise, in which nothing repeats
        Window, ///< the picture of a window: even areas and letters
    };

    /// The file's bytes, with the notes as text fields, pHYs where the size of a pixel is known,
    /// and eXIf. Empty if the picture is empty, too large for the format, or refused by libpng.
    /// Throws std::bad_alloc.
    static QByteArray encode(const QImage& image, const PPictureNotes& notes, Content content);
};
