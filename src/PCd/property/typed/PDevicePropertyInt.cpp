// SPDX-License-Identifier: MIT
#include <PCd/property/typed/PDevicePropertyInt.h>

PDevicePropertyInt::PDevicePropertyInt(const QByteArray& id, const QString& title,
                                       PCD::DevicePropertyType type)
    : PDevicePropertyMinMaxTQVariantBased(id, title, type) {
    connect(this, &PDeviceProperty::valueChanged, this, &PDevicePropertyInt::slotValueChanged);
    connect(this, &PDeviceProperty::rangeChanged, this, &PDevicePropertyInt::slotRangeChanged);
}

void PDevicePropertyInt::slotValueChanged() {
    emit valueChanged(convertToT(valueInner()));
}

void PDevicePropertyInt::slotRangeChanged() {
    emit rangeChanged(convertToR(rangeInner()));
}

#include "moc_PDevicePropertyInt.cpp"
