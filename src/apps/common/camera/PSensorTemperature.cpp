// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSensorTemperature.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

namespace {

/// The temperature that the property's method returns, which is not the property's value; nothing
/// if it could not be read.
std::optional<double> invoked(PDeviceProperty& property) {
    const QByteArray method = PPropertyRoles::method(property, PRole::SensorTemperature);
    QVariant degrees;
    QMetaObject::invokeMethod(&property, method.constData(), Qt::DirectConnection,
                              Q_RETURN_ARG(QVariant, degrees));
    return degrees.isValid() ? std::optional(degrees.toDouble()) : std::nullopt;
}

} // namespace

std::optional<double> PSensorTemperature::of(const PDevice& device) {
    if (device.isGone())
        return std::nullopt;
    if (PDeviceProperty* const property =
            PDeviceRoles::methodProperty(device, PRole::SensorTemperature))
        return invoked(*property);
    PDeviceProperty* const property = PDeviceRoles::property(device, PRole::SensorTemperature);
    if (property == nullptr)
        return std::nullopt;
    property->updateValueFromDevice();
    if (property->isUnread())
        return std::nullopt; // the last one known may be old
    return PPropertyRoles::value(*property).number(PRole::SensorTemperature);
}
