// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PExport.h>

/// A one-shot command of the device: no value, no range, nothing to save. The device's thread.
class PCD_EXPORT PDevicePropertyAction : public PDeviceProperty {
    Q_OBJECT

public:
    PDevicePropertyAction(QByteArray id, QString title, PCD::DevicePropertyType type);

    /// Runs the command, whatever the argument.
    bool trySetValue(QVariant value) override;
    QVariant tryGetValue() override { return QVariant(); }
    QVariant tryGetRange() override { return QVariant(); }
    /// Write nothing, not even an empty object, and return true.
    bool writeStreamThis(PAbstractWriter* writer, const QString& name) override;
    bool writeValueToStream(PAbstractWriter* writer) const override;
    /// Does nothing and returns false: a command is never replayed from a file.
    bool readValueFromStream(PAbstractReader* reader, const QString& name) override;

public slots:
    /// Runs the command. The last virtual function; the order is part of the binary interface.
    virtual bool trySetValueToDevice() = 0;
};
