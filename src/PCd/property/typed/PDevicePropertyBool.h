// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyTNoRangeQVariantBased.h>

/// A switch. The device's thread.
class PDevicePropertyBool : public PDevicePropertyTNoRangeQVariantBased<bool> {
    Q_OBJECT

public:
    PDevicePropertyBool(const QByteArray& id, const QString& title, PCD::DevicePropertyType type);

    using PDeviceProperty::valueChanged;

public slots:
    /// Tell of the host's copies, typed. Connected to the untyped signals of this object.
    void slotValueChanged();

signals:
    void valueChanged(bool value);
};
