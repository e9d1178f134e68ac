// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PPluginExamination.h>

#include <QFileInfo>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QPluginLoader>

#include <optional>
#include <utility>

namespace {

using Severity = PFinding::Severity;

const QString pluginTopic = u"plugin"_qs;

QString toMinorText(const QVersionNumber& version) {
    return u"%1.%2"_qs.arg(QString::number(version.majorVersion()),
                           QString::number(version.minorVersion()));
}

/// What Qt compares before it loads a plugin.
struct AbiMark {
    QVersionNumber qt;
    int processorLevel = 0;
    bool isDebug = false;

    QString toText() const {
        return u"built for Qt %1, processor level %2%3"_qs.arg(
            toMinorText(qt), QString::number(processorLevel),
            isDebug ? u", for debugging"_qs : QString());
    }
    bool fits(const QVersionNumber& running) const {
        return qt.majorVersion() == running.majorVersion() &&
               qt.minorVersion() <= running.minorVersion();
    }
};

/// Nothing if the file is no plugin.
std::optional<AbiMark> readMark(const QString& file) {
    const QJsonObject metadata = QPluginLoader(file).metaData();
    const int version = metadata.value(u"version"_qs).toInt();
    if (version == 0)
        return std::nullopt;
    return AbiMark{QVersionNumber((version >> 16) & 0xff, (version >> 8) & 0xff),
                   metadata.value(u"archlevel"_qs).toInt(), metadata.value(u"debug"_qs).toBool()};
}

PFinding examineQt() {
    const QString running = QLibraryInfo::version().toString();
    return {Severity::Ok,
            u"qt"_qs,
            u"Qt"_qs,
            u"version %1; the programs were built with %2"_qs.arg(running,
                                                                  QStringLiteral(QT_VERSION_STR)),
            {}};
}

PFinding examineLoaded(const QString& file) {
    const std::optional<AbiMark> mark = readMark(file);
    return {Severity::Ok,
            pluginTopic,
            file,
            u"loaded; "_qs + (mark ? mark->toText() : u"has no mark of its Qt"_qs),
            {}};
}

} // namespace

PPluginExamination::PPluginExamination(QStringList loadedFiles,
                                       QList<PPluginLoader::Failure> failures)
    : m_loadedFiles(std::move(loadedFiles))
    , m_failures(std::move(failures)) {
}

QList<PFinding> PPluginExamination::run() const {
    QList<PFinding> findings{examineQt()};
    for (const QString& file : m_loadedFiles)
        findings.append(examineLoaded(file));
    for (const PPluginLoader::Failure& failure : m_failures)
        findings.append(examineRefused(failure));
    if (m_loadedFiles.isEmpty()) {
        findings.append({Severity::Error, pluginTopic, u"all plugins"_qs,
                         u"no plugin was loaded, so there are no cameras"_qs,
                         u"Install the plugin for your camera, or give its folder with "
                         "--plugin-path or PCD_PLUGIN_PATH."_qs});
    }
    return findings;
}

PFinding PPluginExamination::examineRefused(const PPluginLoader::Failure& failure) const {
    PFinding finding{
        Severity::Warning, pluginTopic, failure.path, u"not loaded: "_qs + failure.reason, {}};
    const QVersionNumber running = QLibraryInfo::version();
    const std::optional<AbiMark> mark = readMark(failure.path);
    if (mark)
        finding.found += u"; it was "_qs + mark->toText();
    if (mark && !mark->fits(running)) {
        finding.fix = u"Install the version of this plugin that was built for Qt %1."_qs.arg(
            toMinorText(running));
    } else if (!QFileInfo::exists(failure.path)) {
        finding.fix = u"Correct the path in --plugin-path or PCD_PLUGIN_PATH."_qs;
    } else {
        finding.fix =
            u"Install the plugin again, or remove this file from the folder of plugins."_qs;
    }
    return finding;
}
