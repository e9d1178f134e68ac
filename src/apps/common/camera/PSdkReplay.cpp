// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSdkReplay.h>

#include <PCd/plugin/PPluginLoader.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <dlfcn.h>

namespace {

using Load = const char* (*)(const char*);
using Text = const char* (*)();

PStatus replayFailure(const QString& file, const QString& reason) {
    return PStatus::failure(u"cannot replay \"%1\": %2"_qs.arg(file, reason));
}

/// The JSON object that a function without arguments returns; empty if it returns none.
QJsonObject readObject(void* library, const char* function) {
    const auto read = reinterpret_cast<Text>(dlsym(library, function));
    const char* const text = read == nullptr ? nullptr : read();
    return text == nullptr ? QJsonObject() : QJsonDocument::fromJson(text).object();
}

QStringList toTexts(const QJsonValue& array) {
    QStringList texts;
    for (const auto& value : array.toArray())
        texts.append(value.toString());
    return texts;
}

} // namespace

PStatus PSdkReplay::load(const QString& file) {
    m_path = QDir(PPluginLoader::homeFolder()).filePath(u"replay/libtoupcam.so"_qs);
    m_library = dlopen(QFile::encodeName(m_path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (m_library == nullptr)
        return replayFailure(file, QString::fromLocal8Bit(dlerror()));
    const auto read = reinterpret_cast<Load>(dlsym(m_library, "ToupcamReplay_load"));
    if (read == nullptr)
        return replayFailure(file, QString::fromLocal8Bit(dlerror()));
    if (const char* const complaint = read(QFile::encodeName(file).constData()))
        return replayFailure(file, QString::fromUtf8(complaint));
    m_header = readObject(m_library, "ToupcamReplay_header");
    return PStatus::Ok;
}

QStringList PSdkReplay::arguments() const {
    return toTexts(m_header.value(u"arguments"_qs));
}

PSdkReplay::Report PSdkReplay::report() const {
    const QJsonObject report = readObject(m_library, "ToupcamReplay_report");
    return {report.value(u"calls"_qs).toInteger(), toTexts(report.value(u"divergences"_qs)),
            report.value(u"notice"_qs).toString()};
}
