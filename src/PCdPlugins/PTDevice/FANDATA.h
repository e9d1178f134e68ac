// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QDataStream>
#include <QMetaType>

/// Fan switch and speed: the value of "fan". A value type; any thread.
struct PCD_EXPORT FANDATA {
    Q_GADGET
    Q_CLASSINFO("Ranges", "enable=-1..1")
    Q_PROPERTY(qint32 enable MEMBER enable)
    Q_PROPERTY(qint32 target MEMBER target)

public:
    qint32 enable = -1; ///< 1 on, 0 off, -1 could not be read
    qint32 target = 0;  ///< speed level

    friend bool operator==(const FANDATA& a, const FANDATA& b) {
        return a.enable == b.enable && a.target == b.target;
    }
    friend bool operator!=(const FANDATA& a, const FANDATA& b) { return !(a == b); }
};

/// QDataStream format, 8 bytes: enable and target as qint32.
inline QDataStream& operator<<(QDataStream& out, const FANDATA& data) {
    return out << data.enable << data.target;
}

inline QDataStream& operator>>(QDataStream& in, FANDATA& data) {
    return in >> data.enable >> data.target;
}

Q_DECLARE_METATYPE(FANDATA)
