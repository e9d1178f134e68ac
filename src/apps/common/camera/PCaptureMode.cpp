// SPDX-License-Identifier: MIT
#include <apps/common/camera/PCaptureMode.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PFrameStamp.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>

#include <algorithm>

namespace {

bool isSet(const QVariant& value, const QString& field) {
    return PCompositeFields::read(value, field).toInt() == 1;
}

bool isSet(const PDevice& device, const QString& field) {
    const PDeviceProperty* const property = device.getProperty(PCaptureMode::propertyId);
    return property != nullptr && isSet(property->valueInner(), field);
}

} // namespace

bool PCaptureMode::isTriggered(const QVariant& value) {
    return isSet(value, u"capturemode"_qs);
}

bool PCaptureMode::isTriggered(const PDevice& device) {
    return isSet(device, u"capturemode"_qs);
}

bool PCaptureMode::isTriggered(const PDeviceSettings& settings) {
    const auto& values = settings.values;
    return std::any_of(values.begin(), values.end(), [](const auto& value) {
        return value.first == propertyId && isTriggered(value.second);
    });
}

bool PCaptureMode::isTriggeredFromOutside(const PDevice& device) {
    return isSet(device, u"triggermode"_qs);
}
