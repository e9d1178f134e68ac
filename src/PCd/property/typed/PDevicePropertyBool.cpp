// SPDX-License-Identifier: MIT
#include <PCd/property/typed/PDevicePropertyBool.h>

PDevicePropertyBool::PDevicePropertyBool(const QByteArray& id, const QString& title,
                                         PCD::DevicePropertyType type)
    : PDevicePropertyTNoRangeQVariantBased(id, title, type) {
    connect(this, &PDeviceProperty::valueChanged, this, &PDevicePropertyBool::slotValueChanged);
}

void PDevicePropertyBool::slotValueChanged() {
    emit valueChanged(convertToT(valueInner()));
}

#include "moc_PDevicePropertyBool.cpp"
