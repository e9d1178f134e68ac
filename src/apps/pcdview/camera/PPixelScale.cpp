// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PPixelScale.h>

#include <apps/pcdview/camera/PRegionMap.h>

#include <PCd/device/PDevice.h>

#include <algorithm>

namespace {

/// The largest mode divided by the current one: all modes show the same field.
double ofMode(PDevice& device) {
    const PDeviceMode current = device.reportedMode();
    int widest = current.width;
    for (const PDeviceMode& mode : device.getSupportModes())
        widest = std::max(widest, mode.width);
    return current.width > 0 ? double(widest) / current.width : 1;
}

/// The region in pixels of the mode, divided by the size of the picture.
double ofBinning(const PDevice& device, QSize picture) {
    const PRegionMap map = PRegionMap::of(device, picture);
    const bool isTurned = map.rotation % 180 != 0;
    const int across = isTurned ? picture.height() : picture.width();
    return map.onSensor.isEmpty() || across <= 0 ? 1 : double(map.onSensor.width()) / across;
}

} // namespace

double PPixelScale::of(PDevice& device, QSize picture) {
    return ofMode(device) * ofBinning(device, picture);
}
