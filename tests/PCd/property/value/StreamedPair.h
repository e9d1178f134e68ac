// SPDX-License-Identifier: MIT
#pragma once

#include <QDataStream>
#include <QMetaType>

/// A composite value like those of plugins: not comparable, and its QDataStream format omits one
/// part.
struct StreamedPair {
    qint32 saved = 0;
    qint32 leftOut = 0;

    static inline int timesWritten = 0; ///< number of writes to a QDataStream, of any pair
};

inline QDataStream& operator<<(QDataStream& out, const StreamedPair& pair) {
    ++StreamedPair::timesWritten;
    return out << pair.saved;
}

inline QDataStream& operator>>(QDataStream& in, StreamedPair& pair) {
    return in >> pair.saved;
}

Q_DECLARE_METATYPE(StreamedPair)
