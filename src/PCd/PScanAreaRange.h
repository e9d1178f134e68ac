// SPDX-License-Identifier: MIT
#pragma once

#include <QDataStream>
#include <QMetaType>
#include <QRect>

/// The regions of the sensor that a device accepts. Sizes in pixels; a value type.
struct PScanAreaRange {
    QRect bounds;          ///< the whole area
    int minimumWidth = 0;  ///< smallest region
    int minimumHeight = 0; ///< smallest region
    int widthStep = 0;     ///< widths are multiples of it (0: any)
    int heightStep = 0;    ///< heights are multiples of it (0: any)
    int offsetStep = 0;    ///< left and top are multiples of it (0: any)

    friend bool operator==(const PScanAreaRange& a, const PScanAreaRange& b) {
        return a.bounds == b.bounds && a.minimumWidth == b.minimumWidth &&
               a.minimumHeight == b.minimumHeight && a.widthStep == b.widthStep &&
               a.heightStep == b.heightStep && a.offsetStep == b.offsetStep;
    }
    friend bool operator!=(const PScanAreaRange& a, const PScanAreaRange& b) { return !(a == b); }
};

/// QDataStream format: the bounds, then the five numbers as qint32.
inline QDataStream& operator<<(QDataStream& out, const PScanAreaRange& range) {
    return out << range.bounds << qint32(range.minimumWidth) << qint32(range.minimumHeight)
               << qint32(range.widthStep) << qint32(range.heightStep) << qint32(range.offsetStep);
}

inline QDataStream& operator>>(QDataStream& in, PScanAreaRange& range) {
    return in >> range.bounds >> range.minimumWidth >> range.minimumHeight >> range.widthStep >>
           range.heightStep >> range.offsetStep;
}

Q_DECLARE_METATYPE(PScanAreaRange)
