// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyMinMaxTQVariantBased.h>

#include <PCore/PExport.h>

/// A whole number with a range. The device's thread.
class PCD_EXPORT PDevicePropertyInt : public PDevicePropertyMinMaxTQVariantBased<int, int> {
    Q_OBJECT

public:
    PDevicePropertyInt(const QByteArray& id, const QString& title, PCD::DevicePropertyType type);

    using PDeviceProperty::rangeChanged;
    using PDeviceProperty::valueChanged;

public slots:
    /// Emit the typed signals for the cached value and range. Connected to the untyped signals.
    void slotValueChanged();
    void slotRangeChanged();

signals:
    /// The signals of PDeviceProperty, with value and range typed.
    void valueChanged(int value);
    void rangeChanged(PMinMaxRange<int> range);
};
