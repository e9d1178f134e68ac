// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaProperty>
#include <QStringList>

/// The fields of a record, by name, in which two records may differ and still be equal. A field
/// that is not declared is not checked.
template <typename Record>
QStringList fieldsNotCompared() {
    QStringList names;
    const QMetaObject& fields = Record::staticMetaObject;
    for (int i = 0; i < fields.propertyCount(); ++i) {
        const QMetaProperty field = fields.property(i);
        Record other;
        const QVariant value = field.readOnGadget(&other);
        const bool isSwitch = value.typeId() == QMetaType::Bool;
        field.writeOnGadget(&other, isSwitch ? !value.toBool() : value.toDouble() + 1);
        const bool isCompared = !(other == Record()) && other != Record();
        if (!isCompared)
            names.append(QString::fromLatin1(field.name()));
    }
    return names;
}
