// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QRect>
#include <QString>
#include <QVariant>

/// Values of properties as text for the user, and back. Any thread.
class PCD_EXPORT PPropertyText {
public:
    /// "12", "on", "Add 2x2", "0,0,640,480", "target=100 gain=120", bytes as base64. A value of a
    /// type without a text form is written as the type's name in angle brackets; an invalid value
    /// is empty.
    static QString ofValue(const QVariant& value, const QVariant& range);
    /// True for on, true, yes and 1, false for off, false, no and 0; invalid for anything else.
    static QVariant toSwitch(const QString& text);
    /// "x,y,width,height".
    static QString ofRegion(const QRect& region);
    /// A text from a file, made safe for a message: its beginning, with control characters as
    /// question marks.
    static QString shortened(const QString& text);

    /// The value of a text for a property with this value and range: a whole
    /// number; on, off, true, false, 1 or 0; a choice's title, name or device number; a region
    /// x,y,width,height. Invalid if it is none of these. Whether it is within the range is not
    /// checked.
    static QVariant toValue(const QString& text, const QVariant& present, const QVariant& range);
};
