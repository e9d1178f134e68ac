// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureTags.h>
#include <apps/common/metadata/PPictureText.h>

/// Everything saved with a picture about how it was taken. A value.
struct PPictureNotes {
    PPictureText text;
    PPictureTags tags = {};

    /// Of a frame; `pixelSizeUm` is on the specimen, of a pixel as saved. Any thread.
    static PPictureNotes of(const PCameraIdentity& camera, const PFrameStamp* stamp,
                            std::optional<double> pixelSizeUm = std::nullopt) {
        return {pictureTextOf(camera, stamp), PPictureTags::of(camera, stamp, pixelSizeUm)};
    }
};
