// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <QVariant>

/// The value of a property of the device; invalid if the device has no such property. The GUI
/// thread.
inline QVariant propertyValue(const PDevice& device, const char* id) {
    const PDeviceProperty* const property = device.getProperty(id);
    return property == nullptr ? QVariant() : property->valueInner();
}
