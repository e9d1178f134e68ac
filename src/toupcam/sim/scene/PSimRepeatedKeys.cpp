// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimRepeatedKeys.h>

#include <toupcam/sim/scene/PSimJsonObject.h>

#include <QJsonDocument>
#include <vector>

namespace {

/// The place after the closing quote of the string that starts here.
qsizetype skipString(const QByteArray& json, qsizetype at) {
    for (++at; json[at] != '"'; ++at)
        at += int(json[at] == '\\');
    return at + 1;
}

/// Whether the string that ends here is a key.
bool isKey(const QByteArray& json, qsizetype end) {
    while (end < json.size() &&
           (json[end] == ' ' || json[end] == '\t' || json[end] == '\r' || json[end] == '\n'))
        ++end;
    return end < json.size() && json[end] == ':';
}

/// A string without quotes and escapes: "\u0061" is the key "a" too.
QString decoded(const QByteArray& token) {
    return QJsonDocument::fromJson('[' + token + ']').array().at(0).toString();
}

} // namespace

void PSimRepeatedKeys::check(const QByteArray& json) {
    std::vector<QSet<QString>> keys; // of the objects that are open
    qsizetype end = 0;
    for (qsizetype at = 0; at < json.size(); at = end) {
        end = at + 1;
        if (json[at] == '{')
            keys.emplace_back();
        else if (json[at] == '}')
            keys.pop_back();
        if (json[at] != '"')
            continue;
        end = skipString(json, at);
        if (!isKey(json, end))
            continue;
        const QString key = decoded(json.mid(at, end - at));
        if (keys.back().contains(key))
            throw PSimSceneError(
                PSimSceneError::line(json, at),
                u"the key %1 found twice, expected once"_qs.arg(PSimSceneError::shown(key)));
        keys.back().insert(key);
    }
}
