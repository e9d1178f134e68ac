// SPDX-License-Identifier: MIT
#include <apps/common/camera/PCaptureMode.h>

#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PPropertyRoles.h>

PDeviceProperty* PCaptureMode::property(const PDevice& device) {
    return PDeviceRoles::property(device, PRole::Triggered);
}

bool PCaptureMode::isTriggered(const PDeviceProperty& property, const QVariant& value) {
    return PRoleValue{{}, value, PPropertyRoles::of(property)}.isOn(PRole::Triggered);
}

bool PCaptureMode::isTriggered(const PDevice& device) {
    return PDeviceRoles::of(device).isOn(PRole::Triggered);
}

bool PCaptureMode::isTriggered(const PDeviceSettings& settings) {
    return PDeviceRoles::of(settings).isOn(PRole::Triggered);
}

bool PCaptureMode::isTriggeredFromOutside(const PDevice& device) {
    return PDeviceRoles::of(device).isOn(PRole::TriggerSource);
}
