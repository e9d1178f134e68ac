// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTProps.h>

#include <PCdPlugins/PTDevice/PTCallbackGuard.h>
#include <PCdPlugins/PTDevice/PTLiveDevices.h>
#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCd/device/PDevice.h>

namespace {

constexpr auto cbWbOnceText = "void cbWbOnce(const int, const int, void *)";

/// Both values, read from the camera.
struct TempTint {
    int temp = 0;
    int tint = 0;
};

TempTint readTempTint(Toupcam_t* handle) {
    TempTint pair;
    Toupcam_get_TempTint(handle, &pair.temp, &pair.tint);
    return pair;
}

} // namespace

PTTempTint::PTTempTint(Toupcam_t* handle, int selector, PMinMaxRange<int> range,
                       const QByteArray& id, const QString& title)
    : PDevicePropertyInt(id, title, PCD::DevicePropertyType::Integer)
    , m_handle(handle)
    , m_selector(selector)
    , m_minimum(range.minimum)
    , m_maximum(range.maximum)
    , m_step(range.step) {
}

bool PTTempTint::trySetValueToDevice(int value) {
    // Read each time: a one-push white balance changes both.
    if (m_selector == Temperature)
        Toupcam_put_TempTint(m_handle, value, readTempTint(m_handle).tint);
    else if (m_selector == Tint)
        Toupcam_put_TempTint(m_handle, readTempTint(m_handle).temp, value);
    return true;
}

int PTTempTint::tryGetValueFromDevice() {
    const TempTint pair = readTempTint(m_handle);
    switch (m_selector) {
    case Temperature:
        return pair.temp;
    case Tint:
        return pair.tint;
    default:
        return 0;
    }
}

PMinMaxRange<int> PTTempTint::tryGetRangeFromDevice() {
    return {m_minimum, m_maximum, m_step};
}

PTAWBOnce::PTAWBOnce(Toupcam_t* handle, const QByteArray& id, const QString& title)
    : PDevicePropertyAction(id, title, PCD::DevicePropertyType::Action)
    , m_handle(handle) {
}

bool PTAWBOnce::trySetValueToDevice() {
    PDevice* const owner = device();
    PT_LOG() << "Context:" << static_cast<void*>(owner);
    Toupcam_AwbOnePush(m_handle, cbWbOnce, owner);
    return true;
}

void cbWbOnce(const int, const int, void* context) {
    PTCallbackGuard::run(cbWbOnceText, [&] {
        PT_LOG_IN(cbWbOnceText) << "WB Once callback" << context;
        PTLiveDevices::withDevice(context, [](const PDevice* device) {
            PTCallbackGuard::updateLater(device, "tint");
            PTCallbackGuard::updateLater(device, "temp");
        });
    });
}

#include "moc_PTProps.cpp"
