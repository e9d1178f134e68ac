// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDebug>
#include <QRect>
#include <QStringList>
#include <QVariant>

#include <ostream>

// How GoogleTest prints Qt's types when an expectation fails. Every test file that compares them
// must include this.

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
