// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QStringList>
#include <QVariant>

/// The named fields of a composite value: those that its type declares with Q_GADGET and
/// Q_PROPERTY. Whoever shows or edits such a value needs nothing else of its type. Any thread.
class PGadgetFields {
public:
    /// True if the value is a composite with fields.
    static bool isComposite(const QVariant& value);
    /// The fields' names in the order of their declaration; empty for any other value.
    static QStringList names(const QVariant& value);
    /// One field's value; invalid if there is none of this name.
    static QVariant read(const QVariant& value, const QString& name);
    /// Sets one field to what a text means: a whole number that fits the field, a number, or a
    /// switch as in PPropertyText. Fails, and changes nothing, with a sentence that names the
    /// field, the text and what was expected.
    static PStatus write(QVariant& value, const QString& name, const QString& text);
    /// "target=100 gain=120 …".
    static QString toText(const QVariant& value);
};
