// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PViewOptions.h>

#include <apps/common/picture/PPictureFile.h>
#include <apps/pcdview/options/PTheme.h>
#include <apps/pcdview/options/PViewManual.h>

#include <QCommandLineParser>
#include <QGuiApplication>

#include <algorithm>

namespace {

using Shared = PProgramOptions::Option;

constexpr int longestWaitMs = 3'600'000;

PStatus readTheme(const QCommandLineParser& parser, PViewOptions& options) {
    options.theme = parser.value(u"theme"_qs);
    if (options.theme.isEmpty() || PTheme::isKnown(options.theme))
        return PStatus::Ok;
    return PProgramOptions::wrongValue(u"theme"_qs, options.theme, u"system, light or dark"_qs);
}

PStatus readGrab(const QCommandLineParser& parser, PViewOptions& options) {
    options.grab = parser.value(u"grab"_qs);
    bool isNumber = false;
    const QString text = parser.value(u"after"_qs);
    const int after = text.toInt(&isNumber);
    if (!isNumber || after < 0 || after > longestWaitMs)
        return PProgramOptions::wrongValue(u"after"_qs, text,
                                           u"milliseconds from 0 to %1"_qs.arg(longestWaitMs));
    options.grabAfter = std::chrono::milliseconds(after);
    return options.grab.isEmpty() ? PStatus(PStatus::Ok) : PPictureFile::checkName(options.grab);
}

/// No help shows it: only the viewer itself starts such a process.
QCommandLineOption hangNoticeOption() {
    QCommandLineOption option(u"hang-notice"_qs,
                              u"Show the calls that this process waits for, as it sends them."_qs,
                              u"PID"_qs);
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    return option;
}

PStatus readHangNotice(const QCommandLineParser& parser, PViewOptions& options) {
    const QString name = hangNoticeOption().names().first();
    if (!parser.isSet(name))
        return PStatus::Ok;
    options.hangingViewer = parser.value(name).toLongLong();
    if (options.hangingViewer > 0)
        return PStatus::Ok;
    return PProgramOptions::wrongValue(name, parser.value(name), u"the number of a process"_qs);
}

/// At most one file. The question whether to apply it would be open in the picture.
PStatus readProfile(const QCommandLineParser& parser, PViewOptions& options) {
    const QStringList words = parser.positionalArguments();
    if (words.size() > 1)
        return PStatus::failure(
            u"unexpected argument \"%1\": expected one profile"_qs.arg(words[1]));
    if (words.isEmpty())
        return PStatus::Ok;
    options.profile = words.first();
    if (options.profile.isEmpty())
        return PStatus::failure(u"the name of the profile is empty: expected a file"_qs);
    return options.grab.isEmpty()
               ? PStatus(PStatus::Ok)
               : PStatus::failure(
                     u"\"%1\" cannot be applied with --grab: expected one of them"_qs.arg(
                         options.profile));
}

PStatus readOptions(const QCommandLineParser& parser, PViewOptions& options) {
    PStatus status = options.read(parser, {u"theme"_qs, u"grab"_qs, u"after"_qs});
    if (status.isOk())
        status = readTheme(parser, options);
    if (status.isOk())
        status = readGrab(parser, options);
    if (status.isOk())
        status = readHangNotice(parser, options);
    return status.isOk() ? readProfile(parser, options) : status;
}

/// Removes an option with its value, which is a separate argument or follows "=".
void removeOption(QStringList& words, const QString& option) {
    for (qsizetype at = 0; at < words.size();) {
        if (words[at] == option)
            words.remove(at, std::min<qsizetype>(2, words.size() - at));
        else if (words[at].startsWith(option + u'='))
            words.removeAt(at);
        else
            ++at;
    }
}

} // namespace

QString PViewOptions::profileHelp() {
    return u"Profile whose settings to offer to the camera."_qs;
}

QString PViewOptions::summary() {
    return u"Live pictures, stills and recordings from microscope cameras."_qs;
}

QList<QCommandLineOption> PViewOptions::all() {
    return {
        {{u"h"_qs, u"help"_qs}, u"Show this help."_qs},
        {u"version"_qs, u"Show the version."_qs},
        PProgramOptions::makeOption(
            Shared::Sdk,
            u"Camera SDK: auto (the system's, else the simulated one), sim, or a path."_qs,
            u"auto|sim|PATH"_qs),
        PProgramOptions::makeOption(
            Shared::Scene, u"Show the simulated cameras of this scene file."_qs, u"FILE"_qs),
        PProgramOptions::makeOption(
            Shared::PluginPath,
            u"Look for device plugins in this folder or file first. May be repeated."_qs,
            u"PATH"_qs),
        PProgramOptions::makeOption(
            Shared::Camera,
            u"The camera to open: its index, its id, or a unique prefix of its id."_qs, u"ID"_qs),
        PProgramOptions::makeOption(
            Shared::Language,
            u"Language: en or ru. Default: PCD_LANG, else the system's language."_qs,
            u"LANGUAGE"_qs),
        {u"theme"_qs, u"Colours for this run: system, light or dark."_qs, u"NAME"_qs},
        PProgramOptions::makeOption(
            Shared::LogFilter,
            u"Which log records to show, such as \"info\" or \"warning,PTDevice=debug\"."_qs,
            u"FILTER"_qs),
        PProgramOptions::makeOption(
            Shared::Trace,
            u"Write all calls of the camera SDK to this new file, for a report of a fault."_qs,
            u"FILE"_qs),
        PProgramOptions::makeOption(
            Shared::TraceFrames,
            u"With --trace: also write the pixels of all frames, to FILE.frames."_qs, {}),
        {u"grab"_qs, u"Save a screenshot of the window to this file, then exit."_qs, u"FILE"_qs},
        {u"after"_qs, u"Milliseconds to wait before the screenshot. Default: 2000."_qs, u"MS"_qs,
         u"2000"_qs},
    };
}

QStringList PViewOptions::withSimulatedCameras(QStringList arguments) {
    arguments.removeFirst();
    arguments.removeAll(u"--trace-frames"_qs);
    for (const QString& option : {u"--trace"_qs, u"--sdk"_qs, u"--scene"_qs, u"--camera"_qs,
                                  u"-c"_qs, u"--grab"_qs, u"--after"_qs})
        removeOption(arguments, option);
    return arguments + QStringList{u"--sdk"_qs, u"sim"_qs};
}

QStringList PViewOptions::hangNoticeCommand() const {
    if (!grab.isEmpty())
        return {};
    // This very program, also if its file has been replaced meanwhile.
    QStringList words{u"/proc/self/exe"_qs, u"-platform"_qs, QGuiApplication::platformName(),
                      u"--"_qs + hangNoticeOption().names().first(),
                      QString::number(QCoreApplication::applicationPid())};
    if (!language.isEmpty())
        words += QStringList{u"--lang"_qs, language};
    if (!theme.isEmpty())
        words += QStringList{u"--theme"_qs, theme};
    return words;
}

PStatus PViewOptions::parse(const QStringList& arguments, PViewOptions& options, QString& answer) {
    QCommandLineParser parser;
    parser.setApplicationDescription(summary());
    parser.addOptions(all());
    parser.addPositionalArgument(u"profile"_qs, profileHelp(), u"[PROFILE]"_qs);
    parser.addOption(manualOption());
    parser.addOption(hangNoticeOption());
    if (!parser.parse(arguments))
        return PStatus::failure(parser.errorText());
    if (parser.isSet(u"help"_qs))
        answer = parser.helpText().trimmed();
    else if (isManualWanted(parser))
        answer = PViewManual::page();
    else if (parser.isSet(u"version"_qs))
        answer = u"pcdview "_qs + QCoreApplication::applicationVersion();
    return readOptions(parser, options);
}
