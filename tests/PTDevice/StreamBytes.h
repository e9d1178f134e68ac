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

/// Reads a value from these bytes into the given one; `whole` is true if that used exactly all of
/// them.
template <typename T>
T valueOfBytes(const QByteArray& bytes, T value, bool* whole) {
    QDataStream stream(bytes);
    stream >> value;
    *whole = stream.status() == QDataStream::Ok && stream.atEnd();
    return value;
}
