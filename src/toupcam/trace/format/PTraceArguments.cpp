// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceArguments.h>

QStringList PTraceArguments::split(const char* names) {
    const QString list = QString::fromLatin1(names);
    return list.mid(1, list.size() - 2).split(u", "_qs);
}

QJsonObject PTraceArguments::join(const char* names, std::initializer_list<QJsonValue> values) {
    const QStringList keys = split(names);
    QJsonObject object;
    qsizetype index = 0;
    for (const QJsonValue& value : values) {
        const QString& key = keys.at(index++);
        if (!value.isUndefined())
            object.insert(key, value);
    }
    return object;
}
