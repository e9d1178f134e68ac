// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/toupcamreplay.h>

#include <toupcam/trace/replay/PReplayWorld.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

/// A copy of a text that is valid until the next call on this thread; null if making it throws.
template <typename Make>
const char* kept(const Make& make) noexcept {
    try {
        thread_local QByteArray copy;
        copy = make();
        return copy.constData();
    } catch (...) {
        return nullptr;
    }
}

QJsonObject recordedSdk() {
    return PReplayWorld::instance().header().value(u"sdk"_qs).toObject();
}

QByteArray toJson(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

const char* ToupcamReplay_load(const char* file) {
    try {
        PReplayWorld::instance().load(QFile::decodeName(file));
        return nullptr;
    } catch (const std::exception& error) {
        const std::string text = error.what();
        const char* const complaint = kept([&] { return QByteArray::fromStdString(text); });
        return complaint == nullptr ? "there is no memory for it" : complaint;
    }
}

const char* ToupcamReplay_header(void) {
    if (!PReplayWorld::instance().isLoaded())
        return nullptr;
    return kept([] { return toJson(PReplayWorld::instance().header()); });
}

int ToupcamReplay_isSimulated(void) {
    return recordedSdk().value(u"simulated"_qs).toBool() ? 1 : 0;
}

const char* ToupcamReplay_version(void) {
    if (!recordedSdk().value(u"version"_qs).isString())
        return nullptr;
    return kept([] { return recordedSdk().value(u"version"_qs).toString().toUtf8(); });
}

const char* ToupcamReplay_report(void) {
    return kept([] {
        const PReplayWorld::Report report = PReplayWorld::instance().report();
        return toJson({{u"calls"_qs, qint64(report.calls)},
                       {u"divergences"_qs, QJsonArray::fromStringList(report.divergences)},
                       {u"notice"_qs, report.notice}});
    });
}
