// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QString>
#include <QVariant>

/// Writes named values in nested objects. The state of devices and properties is saved through
/// this, whatever the format of the file. One thread at a time.
class PCD_EXPORT PAbstractWriter {
public:
    virtual ~PAbstractWriter() = default;

    /// Opens an object named `name` inside the current one; endObject() closes it, and does nothing
    /// at the root. An object whose name is already used in the enclosing object, or that is nested
    /// more than 64 deep, is left out with its content: writeValue() returns false in it.
    virtual void beginObject(const QString& name) = 0;
    virtual void endObject() = 0;

    /// Writes one value. Types: bool, int, qint64, double, QString, QByteArray, QRect, QUuid.
    /// Returns false, and writes nothing, for any other type, a double that is infinite or not a
    /// number, or a name already used in this object.
    virtual bool writeValue(const QString& name, const QVariant& value) = 0;
};
