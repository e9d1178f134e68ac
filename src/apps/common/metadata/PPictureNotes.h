// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureMetadata.h>
#include <apps/common/metadata/PPictureTags.h>

/// Everything saved with a picture about how it was taken. A value type.
struct PPictureNotes {
    PPictureMetadata text;
    PPictureTags tags = {};

    /// Of a frame; `pixelSizeUm` is on the specimen, of a pixel as saved. Any thread.
    static PPictureNotes of(const PCameraIdentity& camera, const PFrameStamp* stamp,
                            std::optional<double> pixelSizeUm = std::nullopt) {
        return {pictureMetadata(camera, stamp), PPictureTags::of(camera, stamp, pixelSizeUm)};
    }
};
