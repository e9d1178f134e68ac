// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QString>
#include <functional>
#include <initializer_list>
#include <limits>
#include <stdexcept>

/// An error in a scene text; what() names the position, the value found there and what was
/// expected.
class PSimSceneError : public std::runtime_error {
public:
    PSimSceneError(const QString& place, const QString& complaint);

    /// A value as JSON, so that no character of it controls a terminal.
    static QString shown(const QJsonValue& value);
    /// The place of a byte in a text: "line 2".
    static QString line(const QByteArray& text, qsizetype offset);
};

/// Reads one JSON object strictly: values of the wrong kind or out of range, missing ones, and keys
/// not read throw PSimSceneError. Used on one thread.
class PSimJsonObject {
public:
    /// An upper bound that allows everything that fits.
    static constexpr double maxUnsigned = std::numeric_limits<unsigned>::max();

    PSimJsonObject(const QJsonValue& value, const QString& place);

    /// True if the key exists, or if its value is null; neither counts as reading it.
    bool has(const char* key) const { return m_object.contains(QLatin1String(key)); }
    bool isNull(const char* key) const { return m_object.value(QLatin1String(key)).isNull(); }
    /// The place of a key in the scene, as errors name it.
    QString place(const char* key) const;

    /// The value under a key, of the kind that the function says; `fallback` if it is missing.
    QString text(const char* key, const QString& fallback);
    QString requiredText(const char* key);
    bool boolean(const char* key, bool fallback);
    double number(const char* key, double fallback, double minimum, double maximum);
    /// A whole number; T is only the type of the result.
    template <typename T>
    T integer(const char* key, T fallback, double minimum, double maximum) {
        return static_cast<T>(wholeNumber(key, double(fallback), minimum, maximum));
    }
    /// The value under a key as it is; undefined if it is missing.
    QJsonValue value(const char* key);
    /// Calls `read` with each element of an array and its place; a missing key is an empty array.
    void forEach(const char* key,
                 const std::function<void(const QJsonValue&, const QString&)>& read);
    /// The index of the text under the key, which is one of these.
    int choice(const char* key, std::initializer_list<const char*> texts);
    /// Throws if there is a key that none of the calls above has read.
    void finish() const;

    /// Throws an error for the value under a key.
    [[noreturn]] void complain(const char* key, const QString& expected) const;

private:
    double wholeNumber(const char* key, double fallback, double minimum, double maximum);

    QJsonObject m_object;
    QString m_place;
    QSet<QString> m_known;
};
