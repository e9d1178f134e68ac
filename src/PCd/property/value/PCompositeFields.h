// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QStringList>
#include <QVariant>

/// The named fields of a composite value: those that its type declares with Q_GADGET and
/// Q_PROPERTY. Code that shows or edits such a value needs to know nothing else about its type. Any
/// thread.
///
/// A type can declare fields that the device does not hold while another field has a certain value:
/// Q_CLASSINFO("HostFields", "exp gain") and Q_CLASSINFO("HostFieldsWhile", "capturemode=1"). What
/// the device returns for them then means something else, and the cached values are kept.
///
/// It can also declare the ranges of numbers: Q_CLASSINFO("Ranges", "exp=0..60.5 gain=1..999").
/// Text and files with other numbers are then refused; the device's own answers are not checked.
class PCD_EXPORT PCompositeFields {
    Q_DECLARE_TR_FUNCTIONS(PCompositeFields)

public:
    /// True if the value is a composite with fields.
    static bool isComposite(const QVariant& value);
    /// The names of the fields in the order of declaration; empty for any other value.
    static QStringList names(const QVariant& value);
    /// The names of the saved fields: all but those declared with STORED false.
    static QStringList storedNames(const QVariant& value);
    /// One field's value; invalid if there is none of this name.
    static QVariant read(const QVariant& value, const QString& name);
    /// Sets one field from a text: a whole number that fits the field and its range, a number, or
    /// a switch as in PPropertyText. Fails, and changes nothing, with a sentence that names the
    /// field, the text and what was expected.
    static PStatus write(QVariant& value, const QString& name, const QString& text);
    /// Sets one field from a value in a file: a number that fits the field, true or false. A number
    /// outside the field's range is accepted if the field already has it. Returns false and changes
    /// nothing if the field cannot have it, or there is no such field.
    static bool assign(QVariant& value, const QString& name, const QVariant& given);
    /// True if there is such a field and it could have this value from a file if it had no range.
    static bool isOfType(const QVariant& value, const QString& name, const QVariant& given);
    /// The values that a field can have, in words: "a whole number of 16 bits"; empty if there is
    /// none.
    static QString expectation(const QVariant& value, const QString& name);
    /// A value read from a device, with the fields that the device does not hold taken from the
    /// cached value. A value without fields, or of a type other than the cached one, is returned as
    /// read.
    static QVariant withHostFields(QVariant read, const QVariant& known);
    /// "target=100 gain=120 …".
    static QString toText(const QVariant& value);
};
