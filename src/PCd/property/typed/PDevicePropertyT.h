// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <utility>

/// A property whose value has the type T in the device's hands. It turns the host's untyped
/// operations into typed ones and conversions; it keeps no value. The device's thread.
template <typename T>
class PDevicePropertyT : public PDeviceProperty {
public:
    PDevicePropertyT(QByteArray id, QString title, PCD::DevicePropertyType type)
        : PDeviceProperty(std::move(id), std::move(title), type) {}

    /// Converts and sends. The result is the device's own word, whatever its sense.
    bool trySetValue(QVariant value) override { return trySetValueToDevice(convertToT(value)); }
    /// Asks the device; nothing is cached.
    QVariant tryGetValue() override { return convertFromT(tryGetValueFromDevice()); }

    // The order of the virtual operations is part of the binary interface.

    /// Sends a value to the device. What the result means is the device's affair.
    virtual bool trySetValueToDevice(T value) = 0;
    /// The device's value.
    virtual T tryGetValueFromDevice() = 0;
    /// The value in a variant; what cannot be converted gives a default-constructed T.
    virtual T convertToT(QVariant value) const = 0;
    virtual QVariant convertFromT(T value) const = 0;
};
