// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceFrame.h>

#include <PCore/PExport.h>

/// Conversion between images and frames. Any thread.
class PCD_EXPORT PCdDipUtils {
public:
    /// The image as a frame. An image that has passed through a device keeps its stamp, so a live
    /// frame that becomes a snapshot keeps its number.
    static PDeviceFrame imageAsDeviceFrame(const PImage& image);
};
