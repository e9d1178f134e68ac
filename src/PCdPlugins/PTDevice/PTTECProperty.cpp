// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTTECProperty.h>

#include <PCdPlugins/PTDevice/PTLog.h>
#include <PCdPlugins/PTDevice/PTTECPanel.h>

PTECProperty::PTECProperty(Toupcam_t* handle, const QByteArray& id, const QString& title)
    : PDevicePropertyT(id, title, PCD::DevicePropertyType::Custom)
    , m_h(handle) {
}

bool PTECProperty::trySetValueToDevice(TECDATA d) {
    Toupcam_put_Option(m_h, TOUPCAM_OPTION_TEC, d.on);
    return checkError(Toupcam_put_Temperature(m_h, d.target));
}

TECDATA PTECProperty::tryGetValueFromDevice() {
    TECDATA d = value();
    Toupcam_get_Option(m_h, TOUPCAM_OPTION_TEC, &d.on);
    return d;
}

TECDATA PTECProperty::convertToT(QVariant value) const {
    return value.value<TECDATA>();
}

QVariant PTECProperty::convertFromT(TECDATA value) const {
    return QVariant::fromValue(value);
}

void PTECProperty::trySetRange(QVariant) {
}

QVariant PTECProperty::sensorTemperature() const {
    short tenthsOfDegree = 0;
    return checkError(Toupcam_get_Temperature(m_h, &tenthsOfDegree)) ? tenthsOfDegree / 10.0
                                                                     : QVariant();
}

QWidget* PTECProperty::createWidget() {
    return new PTTECPanel(this);
}

#include "moc_PTTECProperty.cpp"
#include "moc_TECDATA.cpp"
