// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PCaptureMode.h>

#include <PCd/PDevice.h>
#include <PCd/PDeviceProperty.h>
#include <PCd/PGadgetFields.h>

namespace {

bool isSet(const PDevice& device, const QString& field) {
    const PDeviceProperty* const property = device.getProperty(PCaptureMode::propertyId);
    return property != nullptr && PGadgetFields::read(property->valueInner(), field).toInt() == 1;
}

} // namespace

bool PCaptureMode::isTriggered(const PDevice& device) {
    return isSet(device, u"capturemode"_qs);
}

bool PCaptureMode::isTriggeredFromOutside(const PDevice& device) {
    return isSet(device, u"triggermode"_qs);
}
