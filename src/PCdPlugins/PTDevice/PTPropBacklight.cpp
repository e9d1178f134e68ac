// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPropBacklight.h>

#include <PCdPlugins/PTDevice/PTBacklightPanel.h>
#include <PCdPlugins/PTDevice/PTLog.h>

PTBacklightProperty::PTBacklightProperty(Toupcam_t* handle, const QByteArray& id,
                                         const QString& title)
    : PDevicePropertyInt(id, title, PCD::DevicePropertyType::Custom)
    , m_handle(handle) {
}

bool PTBacklightProperty::trySetValueToDevice(int value) {
    return checkError(Toupcam_put_HZ(m_handle, value));
}

int PTBacklightProperty::tryGetValueFromDevice() {
    int value = 0;
    Toupcam_get_HZ(m_handle, &value);
    return value;
}

PMinMaxRange<int> PTBacklightProperty::tryGetRangeFromDevice() {
    return {0, 0, 0};
}

QWidget* PTBacklightProperty::createWidget() {
    return new PTBacklightPanel(this);
}

#include "moc_PTPropBacklight.cpp"
