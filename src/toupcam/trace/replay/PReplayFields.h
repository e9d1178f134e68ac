// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <stdexcept>

/// What is wrong with a trace, with the line.
class PReplayError : public std::runtime_error {
public:
    /// Of a line, counted from 1; 0 for the file as a whole.
    PReplayError(int line, const QString& problem);
};

/// An object in a line of a trace. Its functions throw a PReplayError with the line and what was
/// expected. A value type; any thread.
class PReplayFields {
public:
    PReplayFields(int line, const QJsonObject& object)
        : m_line(line)
        , m_object(object) {}
    /// The object that is the text of a line.
    static PReplayFields parse(int line, const QByteArray& text);

    const QJsonObject& values() const { return m_object; }
    QJsonValue value(const QString& key) const { return m_object.value(key); }
    QString text(const QString& key) const { return m_object.value(key).toString(); }
    /// A whole number in this range.
    qint64 number(const QString& key, qint64 least, qint64 most) const;
    /// Likewise, of any number that an int can be.
    int integer(const QString& key) const;
    PReplayFields object(const QString& key) const;
    /// The number of the handle in "h"; 0 if it is null.
    int handle() const;

    /// Throws this, with the line before it.
    [[noreturn]] void complain(const QString& problem) const;

private:
    int m_line;
    QJsonObject m_object;
};
