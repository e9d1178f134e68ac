// SPDX-License-Identifier: MIT
#pragma once

#include <QDataStream>
#include <QIODevice>

/// The bytes that a default QDataStream writes for a value.
template <typename T>
QByteArray toBytes(const T& value) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

/// The value that a QDataStream reads into this one; `whole` is true if it took exactly these
/// bytes.
template <typename T>
T valueOfBytes(const QByteArray& bytes, T value, bool* whole) {
    QDataStream stream(bytes);
    stream >> value;
    *whole = stream.status() == QDataStream::Ok && stream.atEnd();
    return value;
}
