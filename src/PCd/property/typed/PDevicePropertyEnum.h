// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>
#include <PCd/property/typed/PDevicePropertyTRangedQVariantBased.h>

#include <PCore/PExport.h>

#include <QUuid>

/// A choice: its value is the id of one item of its range. The device's thread.
class PCD_EXPORT PDevicePropertyEnum
    : public PDevicePropertyTRangedQVariantBased<QUuid, PEnumeration> {
    Q_OBJECT

public:
    PDevicePropertyEnum(QByteArray id, QString title, PCD::DevicePropertyType type);

    using PDeviceProperty::rangeChanged;
    using PDeviceProperty::valueChanged;

public slots:
    /// Emit the typed signals for the cached value and range. Connected to the untyped signals.
    void slotValueChanged();
    void slotRangeChanged();

signals:
    /// The signals of PDeviceProperty, with value and range typed.
    void valueChanged(QUuid value);
    void rangeChanged(PEnumeration range);
};
