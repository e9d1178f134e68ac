// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayRecording.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

namespace {

QString toJson(const QJsonValue& value) {
    if (value.isString())
        return value.toString();
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

} // namespace

QString PReplayCall::toText(const QString& name, const QJsonObject& in) {
    QStringList arguments;
    for (auto it = in.begin(); it != in.end(); ++it)
        arguments.append(it.key() + u'=' + toJson(it.value()));
    return name + u'(' + arguments.join(u", "_qs) + u')';
}
