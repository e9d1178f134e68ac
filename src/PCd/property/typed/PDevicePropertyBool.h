// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyTNoRangeQVariantBased.h>

#include <PCore/PExport.h>

/// A switch. The device's thread.
class PCD_EXPORT PDevicePropertyBool : public PDevicePropertyTNoRangeQVariantBased<bool> {
    Q_OBJECT

public:
    PDevicePropertyBool(const QByteArray& id, const QString& title, PCD::DevicePropertyType type);

    using PDeviceProperty::valueChanged;

public slots:
    /// Emits the typed signal for the cached value. Connected to the untyped signal.
    void slotValueChanged();

signals:
    /// The signal of PDeviceProperty, with the value typed.
    void valueChanged(bool value);
};
