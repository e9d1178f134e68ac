// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PViewOptions.h>

#include <apps/common/picture/PPictureFile.h>
#include <apps/common/program/PTranslations.h>
#include <apps/pcdview/options/PTheme.h>

#include <QCommandLineParser>

#include <algorithm>

namespace {

constexpr int longestWaitMs = 3'600'000;

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        u"Live pictures, still pictures and recordings of microscope cameras."_qs);
    parser.addOptions({
        {{u"h"_qs, u"help"_qs}, u"Show this help."_qs},
        {u"version"_qs, u"Show the version."_qs},
        {u"sdk"_qs,
         u"Camera library: auto (the system's, else simulated cameras), sim, or a path."_qs,
         u"auto|sim|PATH"_qs, u"auto"_qs},
        {u"scene"_qs, u"Scene file of the simulated cameras."_qs, u"FILE"_qs},
        {u"plugin-path"_qs, u"Look for camera plugins there too; may be repeated."_qs, u"PATH"_qs},
        {{u"c"_qs, u"camera"_qs},
         u"Camera to open: its number, id, or the beginning of it."_qs,
         u"ID"_qs},
        {u"lang"_qs, u"Language: ru or en; else PCD_LANG, else the system's."_qs, u"LANGUAGE"_qs},
        {u"theme"_qs, u"Colours for this run: system, light or dark."_qs, u"NAME"_qs},
        {u"log-level"_qs,
         u"Which log records to show, as \"info\" or \"warning,PTDevice=debug\"."_qs, u"FILTER"_qs},
        {u"grab"_qs, u"Save a picture of the window to a file (.png), then end."_qs, u"FILE"_qs},
        {u"after"_qs, u"Milliseconds to wait before --grab."_qs, u"MS"_qs, u"2000"_qs},
    });
}

PStatus wrongValue(const QString& option, const QString& value, const QString& expected) {
    return PStatus::failure(
        u"\"%1\" is no value for --%2: expected %3"_qs.arg(value, option, expected));
}

/// A text option that is given says something: an empty one comes from a variable that was not set.
PStatus checkTexts(const QCommandLineParser& parser) {
    for (const QString& option : parser.optionNames()) {
        const bool isText = option != u"help"_qs && option != u"h"_qs && option != u"version"_qs;
        if (isText && parser.values(option).contains(QString()))
            return wrongValue(option, QString(), u"a text that is not empty"_qs);
    }
    return PStatus::Ok;
}

PStatus readLanguage(const QCommandLineParser& parser, PViewOptions& options) {
    options.language = parser.value(u"lang"_qs);
    if (options.language.isEmpty() || PTranslations::isKnown(options.language))
        return PStatus::Ok;
    return wrongValue(u"lang"_qs, options.language, u"en or ru"_qs);
}

PStatus readTheme(const QCommandLineParser& parser, PViewOptions& options) {
    options.theme = parser.value(u"theme"_qs);
    if (options.theme.isEmpty() || PTheme::isKnown(options.theme))
        return PStatus::Ok;
    return wrongValue(u"theme"_qs, options.theme, u"system, light or dark"_qs);
}

PStatus readGrab(const QCommandLineParser& parser, PViewOptions& options) {
    options.grab = parser.value(u"grab"_qs);
    bool isNumber = false;
    const QString text = parser.value(u"after"_qs);
    const int after = text.toInt(&isNumber);
    if (!isNumber || after < 0 || after > longestWaitMs)
        return wrongValue(u"after"_qs, text, u"milliseconds from 0 to %1"_qs.arg(longestWaitMs));
    options.grabAfter = std::chrono::milliseconds(after);
    return options.grab.isEmpty() ? PStatus(PStatus::Ok) : PPictureFile::checkName(options.grab);
}

PStatus readOptions(const QCommandLineParser& parser, PViewOptions& options) {
    options.sdk = parser.value(u"sdk"_qs);
    options.scene = parser.value(u"scene"_qs);
    options.pluginPaths = parser.values(u"plugin-path"_qs);
    options.camera = parser.value(u"camera"_qs);
    if (parser.isSet(u"log-level"_qs))
        options.logFilter = parser.value(u"log-level"_qs);
    PStatus status = checkTexts(parser);
    if (status.isOk())
        status = readLanguage(parser, options);
    if (status.isOk())
        status = readTheme(parser, options);
    return status.isOk() ? readGrab(parser, options) : status;
}

/// With its value, which is a word of its own or follows "=".
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

QStringList PViewOptions::withSimulatedCameras(QStringList arguments) {
    arguments.removeFirst();
    for (const QString& option :
         {u"--sdk"_qs, u"--scene"_qs, u"--camera"_qs, u"-c"_qs, u"--grab"_qs, u"--after"_qs})
        removeOption(arguments, option);
    return arguments + QStringList{u"--sdk"_qs, u"sim"_qs};
}

PStatus PViewOptions::parse(const QStringList& arguments, PViewOptions& options, QString& answer) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments))
        return PStatus::failure(parser.errorText());
    if (!parser.positionalArguments().isEmpty()) {
        return PStatus::failure(
            u"unexpected argument \"%1\""_qs.arg(parser.positionalArguments().first()));
    }
    if (parser.isSet(u"help"_qs))
        answer = parser.helpText().trimmed();
    else if (parser.isSet(u"version"_qs))
        answer = u"pcdview "_qs + QCoreApplication::applicationVersion();
    return readOptions(parser, options);
}
