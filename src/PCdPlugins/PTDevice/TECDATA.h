// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QDataStream>
#include <QMetaType>

/// Cooler switch and target temperature: the value of "teccontrol". A value type; any thread.
struct PCD_EXPORT TECDATA {
    Q_GADGET
    Q_CLASSINFO("Ranges", "on=0..1")
    Q_PROPERTY(qint32 on MEMBER on)
    Q_PROPERTY(qint16 target MEMBER target)

public:
    qint32 on = 0;       ///< 0 off
    qint16 target = 150; ///< tenths of a degree Celsius

    friend bool operator==(const TECDATA& a, const TECDATA& b) {
        return a.on == b.on && a.target == b.target;
    }
    friend bool operator!=(const TECDATA& a, const TECDATA& b) { return !(a == b); }
};

/// QDataStream format, 6 bytes: on as qint32, target as qint16.
inline QDataStream& operator<<(QDataStream& out, const TECDATA& data) {
    return out << data.on << data.target;
}

inline QDataStream& operator>>(QDataStream& in, TECDATA& data) {
    return in >> data.on >> data.target;
}

Q_DECLARE_METATYPE(TECDATA)
