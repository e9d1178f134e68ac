// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QVariant>

class PAbstractReader;
class PAbstractWriter;

/// The form in which a property's value is written: a choice as its item's untranslated name, which
/// users can read and edit; a composite value as its stored fields by their names
/// (PCompositeFields), or, if it declares none, as the bytes of its QDataStream operators;
/// everything else as it is. Any thread.
class PCD_EXPORT PPropertyEncoding {
public:
    /// True for a value of a type that is not Qt's, such as a plugin's record of several fields.
    static bool isComposite(const QVariant& value);
    /// A choice as its item's untranslated name, any other value as it is.
    static QVariant named(const QVariant& value, const QVariant& range);
    /// The form of a value; a choice needs the property's range. Invalid if it has none. For a
    /// composite with fields, a QVariantMap of them.
    static QVariant toForm(const QVariant& value, const QVariant& range);

    /// The value of a form. `current` is the property's present value: it determines the type, and
    /// fields of a composite that the form lacks are taken from it. Invalid if the form is not a
    /// value of that type: an unknown name, a field that does not exist or cannot have that value,
    /// bytes that are too few or too many or hold such a field, another type.
    static QVariant fromForm(const QVariant& form, const QVariant& current, const QVariant& range);

    /// Writes the form of a value under this name: fields as an object, anything else as a value.
    /// False if it has none.
    static bool write(PAbstractWriter& writer, const QString& name, const QVariant& value,
                      const QVariant& range);
    /// Reads what write() wrote; invalid if there is nothing of this name.
    static QVariant read(PAbstractReader& reader, const QString& name);

    /// True if two forms are equal and of one type: QVariant alone would treat "1" and 1 as equal.
    static bool areEqual(const QVariant& formA, const QVariant& formB);

    /// True if two values have the same form: types of plugins need not be comparable otherwise.
    static bool isSame(const QVariant& a, const QVariant& b, const QVariant& range);
};
