// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSensorTemperature.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

std::optional<double> PSensorTemperature::of(const PDevice& device) {
    PDeviceProperty* const cooler = device.getProperty("teccontrol");
    if (device.isGone() || cooler == nullptr ||
        cooler->metaObject()->indexOfMethod("sensorTemperature()") < 0)
        return std::nullopt;
    QVariant degrees;
    QMetaObject::invokeMethod(cooler, "sensorTemperature", Qt::DirectConnection,
                              Q_RETURN_ARG(QVariant, degrees));
    return degrees.isValid() ? std::optional(degrees.toDouble()) : std::nullopt;
}
