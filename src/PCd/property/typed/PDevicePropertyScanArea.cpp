// SPDX-License-Identifier: MIT
#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <PCore/state/PAbstractReader.h>

PDevicePropertyScanArea::PDevicePropertyScanArea(const QByteArray& id, const QString& title,
                                                 PCD::DevicePropertyType type)
    : PDevicePropertyTRangedQVariantBased(id, title, type) {
}

bool PDevicePropertyScanArea::writeStreamThis(PAbstractWriter* writer, const QString& name) {
    return valueInner().toRect().isEmpty() ||
           PDevicePropertyTRangedQVariantBased::writeStreamThis(writer, name);
}

bool PDevicePropertyScanArea::writeValueToStream(PAbstractWriter* writer) const {
    return valueInner().toRect().isEmpty() ||
           PDevicePropertyTRangedQVariantBased::writeValueToStream(writer);
}

bool PDevicePropertyScanArea::readValueFromStream(PAbstractReader* reader, const QString& name) {
    const QVariant region = reader->readValue(name);
    if (region.typeId() != QMetaType::QRect)
        return false;
    setValue(region);
    return valueInner() == region;
}
