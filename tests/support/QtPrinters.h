// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDebug>
#include <QRect>
#include <QStringList>
#include <QVariant>

#include <ostream>

// How GoogleTest shows Qt's types when an expectation fails. To be included by every test file that
// compares them.

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << QDebug::toString(list).toStdString();
}

inline void PrintTo(const QVariant& value, std::ostream* out) {
    *out << QDebug::toString(value).toStdString();
}

inline void PrintTo(const QRect& rect, std::ostream* out) {
    *out << QDebug::toString(rect).toStdString();
}
