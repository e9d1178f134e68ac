// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayFields.h>

#include <toupcam/trace/format/PTraceText.h>

#include <QJsonDocument>

#include <limits>

PReplayError::PReplayError(int line, const QString& problem)
    : std::runtime_error(
          (line == 0 ? problem : u"line %1: %2"_qs.arg(QString::number(line), problem))
              .toStdString()) {
}

PReplayFields PReplayFields::parse(int line, const QByteArray& text) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    const PReplayFields fields(line, document.object());
    if (error.error != QJsonParseError::NoError) {
        fields.complain(u"%1 at character %2, expected a JSON object"_qs.arg(
            error.errorString(), QString::number(error.offset + 1)));
    }
    if (!document.isObject())
        fields.complain(u"expected a JSON object"_qs);
    return fields;
}

qint64 PReplayFields::number(const QString& key, qint64 least, qint64 most) const {
    const QJsonValue value = m_object.value(key);
    const qint64 whole = value.toInteger();
    if (!value.isDouble() || double(whole) != value.toDouble() || whole < least || whole > most) {
        complain(u"%1: expected a whole number from %2 to %3"_qs.arg(key, QString::number(least),
                                                                     QString::number(most)));
    }
    return whole;
}

int PReplayFields::integer(const QString& key) const {
    using Limits = std::numeric_limits<int>;
    return int(number(key, Limits::min(), Limits::max()));
}

PReplayFields PReplayFields::object(const QString& key) const {
    const QJsonValue value = m_object.value(key);
    if (!value.isObject())
        complain(u"%1: expected an object"_qs.arg(key));
    return {m_line, value.toObject()};
}

int PReplayFields::handle() const {
    const std::optional<int> found =
        m_object.contains(u"h"_qs) ? PTraceText::toHandle(m_object.value(u"h"_qs)) : std::nullopt;
    if (!found)
        complain(u"h: expected a handle such as \"h1\", or null"_qs);
    return *found;
}

void PReplayFields::complain(const QString& problem) const {
    throw PReplayError(m_line, problem);
}
