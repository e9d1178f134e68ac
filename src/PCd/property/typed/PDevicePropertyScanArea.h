// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PScanAreaRange.h>
#include <PCd/property/typed/PDevicePropertyTRangedQVariantBased.h>

#include <PCore/PExport.h>

#include <QRect>

/// A region of the sensor. The device's thread.
class PCD_EXPORT PDevicePropertyScanArea
    : public PDevicePropertyTRangedQVariantBased<QRect, PScanAreaRange> {
    Q_OBJECT

public:
    PDevicePropertyScanArea(const QByteArray& id, const QString& title,
                            PCD::DevicePropertyType type);

    /// Write nothing and succeed if the device could not report a region.
    bool writeStreamThis(PAbstractWriter* writer, const QString& name) override;
    bool writeValueToStream(PAbstractWriter* writer) const override;
    /// Sends the region to the device and reads it back: only that shows whether it was taken, as
    /// devices differ in what their results mean.
    bool readValueFromStream(PAbstractReader* reader, const QString& name) override;
};
