// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTCallbackGuard.h>

#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <QMetaObject>

void PTCallbackGuard::logException(const char* callback, const char* what) noexcept {
    try {
        ptLog(callback, __FILE__, __LINE__, PLogLevel::Error) << "Exception:" << what;
    } catch (...) {
        return; // no memory for the record either
    }
}

void PTCallbackGuard::updateLater(const PDevice* device, const char* propertyId) {
    // The property belongs to the device's thread, and may emit its signals only there.
    if (PDeviceProperty* const property = device->getProperty(propertyId))
        QMetaObject::invokeMethod(property, "updateValueFromDevice", Qt::QueuedConnection);
}
