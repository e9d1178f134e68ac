// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSdkTrace.h>

#include <apps/common/camera/PCameraSdk.h>

#include <PCd/plugin/PPluginLoader.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <dlfcn.h>

namespace {

using Start = const char* (*)(const char*, const char*, const char*, int);
using Failure = const char* (*)();

QJsonObject describe(const PCameraSdk& sdk) {
    // The name of the file only: its folder says something about the computer.
    QJsonObject object{{u"file"_qs, QFileInfo(sdk.path()).fileName()},
                       {u"simulated"_qs, sdk.isSimulated()}};
    if (!sdk.version().isEmpty())
        object.insert(u"version"_qs, sdk.version());
    return object;
}

QByteArray makeHeader(const PCameraSdk& sdk) {
    const QJsonObject header{
        {u"arguments"_qs, QJsonArray::fromStringList(QCoreApplication::arguments().mid(1))},
        {u"program"_qs, QCoreApplication::applicationName()},
        {u"sdk"_qs, describe(sdk)},
        {u"started"_qs, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {u"version"_qs, QCoreApplication::applicationVersion()}};
    return QJsonDocument(header).toJson(QJsonDocument::Compact);
}

PStatus traceFailure(const QString& file, const QString& reason) {
    return PStatus::failure(u"cannot write the trace \"%1\": %2"_qs.arg(file, reason));
}

} // namespace

PStatus PSdkTrace::start(const PCameraSdk& sdk, const Target& target) {
    if (sdk.path().isEmpty())
        return traceFailure(target.file, u"there is no camera SDK"_qs);
    const QByteArray recorder =
        QFile::encodeName(QDir(PPluginLoader::homeFolder()).filePath(u"trace/libtoupcam.so"_qs));
    void* const library = dlopen(recorder.constData(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return traceFailure(target.file, QString::fromLocal8Bit(dlerror()));
    const auto begin = reinterpret_cast<Start>(dlsym(library, "ToupcamTrace_start"));
    if (begin == nullptr)
        return traceFailure(target.file, QString::fromLocal8Bit(dlerror()));
    const char* const complaint =
        begin(QFile::encodeName(sdk.path()).constData(), QFile::encodeName(target.file).constData(),
              makeHeader(sdk).constData(), target.wholeFrames ? 1 : 0);
    if (complaint != nullptr)
        return traceFailure(target.file, QString::fromUtf8(complaint));
    // In place of the SDK that this program has loaded, and which keeps its cameras.
    qputenv("TOUPCAM_LIBRARY", recorder);
    m_library = library;
    m_file = target.file;
    return PStatus::Ok;
}

PStatus PSdkTrace::check() const {
    const auto failure = m_library == nullptr
                             ? nullptr
                             : reinterpret_cast<Failure>(dlsym(m_library, "ToupcamTrace_failure"));
    const char* const complaint = failure == nullptr ? nullptr : failure();
    if (complaint == nullptr)
        return PStatus::Ok;
    return PStatus::failure(
        u"the trace \"%1\" ends early: %2"_qs.arg(m_file, QString::fromUtf8(complaint)));
}
