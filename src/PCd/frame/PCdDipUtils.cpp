// SPDX-License-Identifier: MIT
#include <PCd/frame/PCdDipUtils.h>

PDeviceFrame PCdDipUtils::imageAsDeviceFrame(const PImage& image) {
    return {image, PFrameStamp::of(image)};
}
