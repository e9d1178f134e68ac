// SPDX-License-Identifier: MIT
#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <PCore/state/PAbstractReader.h>

namespace {

/// True for a region that the device reported, and that is none.
bool isNoRegion(const PDeviceProperty& region) {
    return !region.isUnread() && region.valueInner().toRect().isEmpty();
}

} // namespace

PDevicePropertyScanArea::PDevicePropertyScanArea(const QByteArray& id, const QString& title,
                                                 PCD::DevicePropertyType type)
    : PDevicePropertyTRangedQVariantBased(id, title, type) {
}

bool PDevicePropertyScanArea::writeStreamThis(PAbstractWriter* writer, const QString& name) {
    return isNoRegion(*this) || PDevicePropertyTRangedQVariantBased::writeStreamThis(writer, name);
}

bool PDevicePropertyScanArea::writeValueToStream(PAbstractWriter* writer) const {
    return isNoRegion(*this) || PDevicePropertyTRangedQVariantBased::writeValueToStream(writer);
}

bool PDevicePropertyScanArea::readValueFromStream(PAbstractReader* reader, const QString& name) {
    const QVariant region = reader->readValue(name);
    if (region.typeId() != QMetaType::QRect)
        return false;
    setValue(region);
    return valueInner() == region;
}

#include "moc_PDevicePropertyScanArea.cpp"
