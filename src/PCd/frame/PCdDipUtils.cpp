// SPDX-License-Identifier: MIT
#include <PCd/frame/PCdDipUtils.h>

PDeviceFrame PCdDipUtils::imageAsDeviceFrame(const PImage& image) {
    return {image, std::dynamic_pointer_cast<const PFrameStamp>(image.attachment())};
}
