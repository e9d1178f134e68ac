// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimJsonObject.h>

#include <QJsonDocument>
#include <QStringList>
#include <cmath>

namespace {

QString rangeText(const char* what, double minimum, double maximum) {
    return u"%1 from %2 to %3"_qs.arg(QLatin1String(what), QString::number(minimum, 'g', 15),
                                      QString::number(maximum, 'g', 15));
}

} // namespace

PSimSceneError::PSimSceneError(const QString& place, const QString& complaint)
    : std::runtime_error(u"%1: %2"_qs.arg(place, complaint).toStdString()) {
}

QString PSimSceneError::shown(const QJsonValue& value) {
    if (value.isUndefined())
        return u"nothing"_qs;
    const QByteArray wrapped =
        QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact); // "[value]"
    return QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2));
}

QString PSimSceneError::line(const QByteArray& text, qsizetype offset) {
    return u"line %1"_qs.arg(text.left(offset).count('\n') + 1);
}

PSimJsonObject::PSimJsonObject(const QJsonValue& value, const QString& place)
    : m_object(value.toObject())
    , m_place(place) {
    if (!value.isObject())
        throw PSimSceneError(place,
                             u"%1 found, expected an object"_qs.arg(PSimSceneError::shown(value)));
}

QString PSimJsonObject::place(const char* key) const {
    return m_place + u'.' + QLatin1String(key);
}

void PSimJsonObject::complain(const char* key, const QString& expected) const {
    throw PSimSceneError(place(key),
                         u"%1 found, expected %2"_qs.arg(
                             PSimSceneError::shown(m_object.value(QLatin1String(key))), expected));
}

QJsonValue PSimJsonObject::value(const char* key) {
    m_known.insert(QLatin1String(key));
    return m_object.value(QLatin1String(key));
}

QString PSimJsonObject::text(const char* key, const QString& fallback) {
    const QJsonValue found = value(key);
    if (found.isUndefined())
        return fallback;
    if (!found.isString())
        complain(key, u"a string"_qs);
    return found.toString();
}

QString PSimJsonObject::requiredText(const char* key) {
    if (!has(key))
        complain(key, u"a string"_qs);
    return text(key, QString());
}

bool PSimJsonObject::boolean(const char* key, bool fallback) {
    const QJsonValue found = value(key);
    if (!found.isUndefined() && !found.isBool())
        complain(key, u"true or false"_qs);
    return found.toBool(fallback);
}

double PSimJsonObject::number(const char* key, double fallback, double minimum, double maximum) {
    const QJsonValue found = value(key);
    if (found.isUndefined())
        return fallback;
    const double result = found.toDouble();
    if (!found.isDouble() || result < minimum || result > maximum)
        complain(key, rangeText("a number", minimum, maximum));
    return result;
}

double PSimJsonObject::wholeNumber(const char* key, double fallback, double minimum,
                                   double maximum) {
    const QJsonValue found = value(key);
    if (found.isUndefined())
        return fallback;
    const double result = found.toDouble();
    if (!found.isDouble() || result != std::floor(result) || result < minimum || result > maximum)
        complain(key, rangeText("a whole number", minimum, maximum));
    return result;
}

void PSimJsonObject::forEach(const char* key,
                             const std::function<void(const QJsonValue&, const QString&)>& read) {
    const QJsonValue found = value(key);
    if (!found.isUndefined() && !found.isArray())
        complain(key, u"an array"_qs);
    const QJsonArray array = found.toArray();
    for (qsizetype i = 0; i < array.size(); ++i)
        read(array.at(i), u"%1[%2]"_qs.arg(place(key), QString::number(i)));
}

int PSimJsonObject::choice(const char* key, std::initializer_list<const char*> texts) {
    const QString found = value(key).toString();
    QStringList expected;
    int index = 0;
    for (const char* text : texts) {
        if (found == QLatin1String(text))
            return index;
        ++index;
        expected += u'"' + QLatin1String(text) + u'"';
    }
    complain(key, u"one of "_qs + expected.join(u", "_qs));
}

void PSimJsonObject::finish() const {
    const QStringList keys = m_object.keys();
    for (const QString& key : keys) {
        if (m_known.contains(key))
            continue;
        QStringList known(m_known.cbegin(), m_known.cend());
        known.sort();
        throw PSimSceneError(m_place, u"unknown key %1, expected one of %2"_qs.arg(
                                          PSimSceneError::shown(key), known.join(u", "_qs)));
    }
}
