// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTFanDevice.h>

#include <PCdPlugins/PTDevice/PTFanPanel.h>
#include <PCdPlugins/PTDevice/PTLog.h>

#include <QDebug>

PTFanProperty::PTFanProperty(Toupcam_t* handle, const QByteArray& id, const QString& title)
    : PDevicePropertyT(id, title, PCD::DevicePropertyType::Custom)
    , m_h(handle) {
}

bool PTFanProperty::trySetValueToDevice(FANDATA d) {
    qDebug() << "Set value to device:" << d.enable << d.target;
    if (d.enable != 0) {
        qDebug() << "Assign fan speed:" << d.target;
        PT_OP(Toupcam_put_Option(m_h, TOUPCAM_OPTION_FAN, d.target));
    } else {
        PT_OP(Toupcam_put_Option(m_h, TOUPCAM_OPTION_FAN, 0));
    }
    return true;
}

FANDATA PTFanProperty::tryGetValueFromDevice() {
    int speed = 0;
    if (!checkError(Toupcam_get_Option(m_h, TOUPCAM_OPTION_FAN, &speed)))
        return {-1, 0};
    return {speed >= 1 ? 1 : 0, speed};
}

FANDATA PTFanProperty::convertToT(QVariant value) const {
    return value.value<FANDATA>();
}

QVariant PTFanProperty::convertFromT(FANDATA value) const {
    return QVariant::fromValue(value);
}

void PTFanProperty::trySetRange(QVariant) {
}

QWidget* PTFanProperty::createWidget() {
    return new PTFanPanel(this);
}

#include "moc_FANDATA.cpp"
#include "moc_PTFanDevice.cpp"
