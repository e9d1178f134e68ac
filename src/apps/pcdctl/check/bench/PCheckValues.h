// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <QList>
#include <QVariant>

/// Values to send to a property in a check, and how to compare them. The device's thread.
class PCheckValues {
public:
    /// Values inside the range, the ends of a number's range left out: switches and choices have
    /// all of theirs, a number one in the middle, a region half of the area, anything else the
    /// present one.
    static QList<QVariant> inside(const PDeviceProperty& property);
    /// The ends of a number's range; the whole area for a region.
    static QList<QVariant> ends(const PDeviceProperty& property);
    /// Values outside the range; none for a property without one.
    static QList<QVariant> outside(const PDeviceProperty& property);
    /// A value inside the range that differs from the present one; invalid if there is none.
    static QVariant other(const PDeviceProperty& property);

    /// True if the range has values: the ends of numbers in order, choices, an area. A number
    /// without a range has none.
    static bool isUsable(const QVariant& range);
    /// True if values of the property can be compared, which those without a saved form cannot.
    static bool areComparable(const PDeviceProperty& property);
    /// True if the camera has what was sent; a number may have been rounded to what the hardware
    /// can do.
    static bool isTaken(const QVariant& sent, const QVariant& has, const QVariant& range);
    /// True for what a driver returns if the camera has nothing: zero, off, the first choice, an
    /// empty region. Not for composite values.
    static bool isZero(const QVariant& value, const QVariant& range);
    /// True if the values are equal.
    static bool isSame(const QVariant& a, const QVariant& b, const QVariant& range);
    /// "sent 5, the camera has 7".
    static QString describe(const QVariant& sent, const PDeviceProperty::Reading& has);

    /// True if the property is a command.
    static bool isAction(const PDeviceProperty& property);
    /// True if setting the property warms or cools the camera.
    static bool isThermal(const PDeviceProperty& property);
    /// True if the property sets how long the camera exposes.
    static bool isTime(const PDeviceProperty& property);
};
