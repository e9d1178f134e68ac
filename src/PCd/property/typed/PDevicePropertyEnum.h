// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>
#include <PCd/property/typed/PDevicePropertyTRangedQVariantBased.h>

#include <QUuid>

/// A choice: its value is the id of one item of its range. The device's thread.
class PDevicePropertyEnum : public PDevicePropertyTRangedQVariantBased<QUuid, PEnumeration> {
    Q_OBJECT

public:
    PDevicePropertyEnum(QByteArray id, QString title, PCD::DevicePropertyType type);

    using PDeviceProperty::rangeChanged;
    using PDeviceProperty::valueChanged;

public slots:
    /// Tell of the host's copies, typed. Connected to the untyped signals of this object.
    void slotValueChanged();
    void slotRangeChanged();

signals:
    void valueChanged(QUuid value);
    void rangeChanged(PEnumeration range);
};
