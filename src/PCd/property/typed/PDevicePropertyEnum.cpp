// SPDX-License-Identifier: MIT
#include <PCd/property/typed/PDevicePropertyEnum.h>

PDevicePropertyEnum::PDevicePropertyEnum(QByteArray id, QString title, PCD::DevicePropertyType type)
    : PDevicePropertyTRangedQVariantBased(std::move(id), std::move(title), type) {
    connect(this, &PDeviceProperty::valueChanged, this, &PDevicePropertyEnum::slotValueChanged);
    connect(this, &PDeviceProperty::rangeChanged, this, &PDevicePropertyEnum::slotRangeChanged);
}

void PDevicePropertyEnum::slotValueChanged() {
    emit valueChanged(convertToT(valueInner()));
}

void PDevicePropertyEnum::slotRangeChanged() {
    emit rangeChanged(convertToR(rangeInner()));
}

#include "moc_PDevicePropertyEnum.cpp"
