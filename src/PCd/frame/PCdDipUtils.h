// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceFrame.h>

/// Between images and the device framework. Any thread.
class PCdDipUtils {
public:
    /// The image as a frame. An image that has passed through a device keeps its stamp: a live
    /// image made into a snapshot is still known as that frame.
    static PDeviceFrame imageAsDeviceFrame(const PImage& image);
};
