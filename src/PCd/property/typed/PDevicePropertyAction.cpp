// SPDX-License-Identifier: MIT
#include <PCd/property/typed/PDevicePropertyAction.h>

PDevicePropertyAction::PDevicePropertyAction(QByteArray id, QString title,
                                             PCD::DevicePropertyType type)
    : PDeviceProperty(std::move(id), std::move(title), type) {
}

bool PDevicePropertyAction::trySetValue(QVariant) {
    return trySetValueToDevice();
}

bool PDevicePropertyAction::writeStreamThis(PAbstractWriter*, const QString&) {
    return true;
}

bool PDevicePropertyAction::writeValueToStream(PAbstractWriter*) const {
    return true;
}

bool PDevicePropertyAction::readValueFromStream(PAbstractReader*, const QString&) {
    return false;
}

#include "moc_PDevicePropertyAction.cpp"
