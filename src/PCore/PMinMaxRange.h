// SPDX-License-Identifier: MIT
#pragma once

#include <QDataStream>
#include <QMetaType>

/// Range of a numeric value: inclusive bounds, and the step between values (in the value's unit).
/// An aggregate: `PMinMaxRange<int> r;` is uninitialised, `PMinMaxRange<int>{}` is all zero.
template <typename T>
struct PMinMaxRange {
    T minimum;
    T maximum;
    T step;

    friend bool operator==(const PMinMaxRange& a, const PMinMaxRange& b) {
        return a.minimum == b.minimum && a.maximum == b.maximum && a.step == b.step;
    }
    friend bool operator!=(const PMinMaxRange& a, const PMinMaxRange& b) { return !(a == b); }
};

/// QDataStream format of an integer range: minimum, maximum and step as qint32.
inline QDataStream& operator<<(QDataStream& out, const PMinMaxRange<int>& range) {
    return out << qint32(range.minimum) << qint32(range.maximum) << qint32(range.step);
}

/// Reads what operator<< wrote; sets the QDataStream's status if the data ends early.
inline QDataStream& operator>>(QDataStream& in, PMinMaxRange<int>& range) {
    return in >> range.minimum >> range.maximum >> range.step;
}

Q_DECLARE_METATYPE(PMinMaxRange<int>)
Q_DECLARE_METATYPE(PMinMaxRange<double>)
