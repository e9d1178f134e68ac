// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PCaptureMode.h>

#include <PCd/PDevice.h>
#include <PCd/PDeviceProperty.h>
#include <PCd/PGadgetFields.h>

bool PCaptureMode::isTriggered(const PDevice& device) {
    const PDeviceProperty* const property = device.getProperty(propertyId);
    return property != nullptr &&
           PGadgetFields::read(property->valueInner(), u"capturemode"_qs).toInt() == 1;
}
