// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <utility>

/// A property whose value has the type T on the device. Converts between the host's untyped values
/// and T; caches nothing. The device's thread.
template <typename T>
class PDevicePropertyT : public PDeviceProperty {
public:
    PDevicePropertyT(QByteArray id, QString title, PCD::DevicePropertyType type)
        : PDeviceProperty(std::move(id), std::move(title), type) {}

    /// Converts and sends. Returns the device's result unchanged.
    bool trySetValue(QVariant value) override { return trySetValueToDevice(convertToT(value)); }
    /// Reads the device; nothing is cached.
    QVariant tryGetValue() override { return convertFromT(tryGetValueFromDevice()); }

    // The order of the virtual functions is part of the binary interface.

    /// Sends a value to the device. The meaning of the result depends on the device.
    virtual bool trySetValueToDevice(T value) = 0;
    /// The device's value.
    virtual T tryGetValueFromDevice() = 0;
    /// The value in a variant; a default-constructed T if it cannot be converted.
    virtual T convertToT(QVariant value) const = 0;
    virtual QVariant convertFromT(T value) const = 0;
};
