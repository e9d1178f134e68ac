// SPDX-License-Identifier: MIT
#include <apps/common/camera/PCameraIdentity.h>

#include <PCd/device/PDevice.h>

PCameraIdentity PCameraIdentity::of(const PDevice* device, bool simulatedSdk) {
    return {QString::fromUtf8(device->deviceId(false)), device->model(), device->serial(),
            simulatedSdk || !device->isRealDevice()};
}
