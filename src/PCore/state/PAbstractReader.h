// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QString>
#include <QStringList>
#include <QVariant>

/// Reads what a PAbstractWriter wrote. Names may be read in any order. One thread at a time.
class PCD_EXPORT PAbstractReader {
public:
    virtual ~PAbstractReader() = default;

    /// Enters the object named `name` in the current object. Returns false, and stays in the
    /// current one, if there is none.
    virtual bool beginObject(const QString& name) = 0;
    /// Leaves the current object; does nothing at the root.
    virtual void endObject() = 0;

    /// Names of the objects, and of the values, in the current object, in the order of the file.
    virtual QStringList objectNames() const = 0;
    virtual QStringList valueNames() const = 0;

    /// The value named `name` in the current object, as written; an invalid QVariant if there is
    /// none.
    virtual QVariant readValue(const QString& name) const = 0;

    /// The position of the value or object named `name` in the source, for messages ("line 12",
    /// "byte 340"); empty if it is unknown.
    virtual QString position(const QString& name) const = 0;
};
