// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QStringList>
#include <QVariant>

/// The named fields of a composite value: those that its type declares with Q_GADGET and
/// Q_PROPERTY. Whoever shows or edits such a value needs nothing else of its type. Any thread.
///
/// A type can name fields that a device does not hold while another field has a certain value:
/// Q_CLASSINFO("HostFields", "exp gain") and Q_CLASSINFO("HostFieldsWhile", "capturemode=1"). What
/// is read of them from the device means something else then, and the host's copy stands.
class PCompositeFields {
    Q_DECLARE_TR_FUNCTIONS(PCompositeFields)

public:
    /// True if the value is a composite with fields.
    static bool isComposite(const QVariant& value);
    /// The fields' names in the order of their declaration; empty for any other value.
    static QStringList names(const QVariant& value);
    /// Those that are saved: all but the ones declared with STORED false.
    static QStringList storedNames(const QVariant& value);
    /// One field's value; invalid if there is none of this name.
    static QVariant read(const QVariant& value, const QString& name);
    /// Sets one field to what a text means: a whole number that fits the field, a number, or a
    /// switch as in PPropertyText. Fails, and changes nothing, with a sentence that names the
    /// field, the text and what was expected.
    static PStatus write(QVariant& value, const QString& name, const QString& text);
    /// Sets one field to a value as files hold them: a number that fits the field, true or false.
    /// False, and nothing is changed, if the field cannot have it, or there is no such field.
    static bool assign(QVariant& value, const QString& name, const QVariant& given);
    /// What a field can be, in words: "a whole number of 16 bits"; empty if there is none.
    static QString expectation(const QVariant& value, const QString& name);
    /// A value as read from a device, with the fields that the device does not hold taken from
    /// what the host has known. Values of different types, and those without fields, come back as
    /// they were read.
    static QVariant withHostFields(QVariant read, const QVariant& known);
    /// "target=100 gain=120 …".
    static QString toText(const QVariant& value);
};
