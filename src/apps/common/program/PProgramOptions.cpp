// SPDX-License-Identifier: MIT
#include <apps/common/program/PProgramOptions.h>

#include <apps/common/program/PTranslations.h>

namespace {

using Option = PProgramOptions::Option;

const QString manualName = u"manual"_qs;

/// The names of an option; the last one is the long name.
QStringList optionNames(Option option) {
    switch (option) {
    case Option::Sdk:
        return {u"sdk"_qs};
    case Option::Scene:
        return {u"scene"_qs};
    case Option::PluginPath:
        return {u"plugin-path"_qs};
    case Option::Camera:
        return {u"c"_qs, u"camera"_qs};
    case Option::Language:
        return {u"lang"_qs};
    case Option::LogFilter:
        return {u"log-level"_qs};
    case Option::Trace:
        return {u"trace"_qs};
    case Option::TraceFrames:
        return {u"trace-frames"_qs};
    }
    return {};
}

QString longName(Option option) {
    return optionNames(option).last();
}

QStringList longNames() {
    QStringList names;
    for (const Option option : {Option::Camera, Option::Sdk, Option::Scene, Option::PluginPath,
                                Option::LogFilter, Option::Language, Option::Trace})
        names.append(longName(option));
    return names;
}

/// A given text option must not be empty: it would come from a variable that was not set.
PStatus checkTexts(const QCommandLineParser& parser, const QStringList& options) {
    for (const QString& option : options) {
        if (parser.isSet(option) && parser.values(option).contains(QString()))
            return PProgramOptions::wrongValue(option, QString(), u"a non-empty value"_qs);
    }
    return PStatus::Ok;
}

} // namespace

QCommandLineOption PProgramOptions::makeOption(Option option, const QString& help,
                                               const QString& valueName) {
    QCommandLineOption declared(optionNames(option), help, valueName);
    if (option == Option::Sdk)
        declared.setDefaultValue(PProgramOptions().sdk);
    return declared;
}

QCommandLineOption PProgramOptions::manualOption() {
    QCommandLineOption option(manualName, u"Print the manual page."_qs);
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    return option;
}

bool PProgramOptions::isManualWanted(const QCommandLineParser& parser) {
    return parser.isSet(manualName);
}

PStatus PProgramOptions::read(const QCommandLineParser& parser, const QStringList& otherTexts) {
    const PStatus status = checkTexts(parser, longNames() + otherTexts);
    if (!status.isOk())
        return status;
    sdk = parser.value(longName(Option::Sdk));
    scene = parser.value(longName(Option::Scene));
    pluginPaths = parser.values(longName(Option::PluginPath));
    camera = parser.value(longName(Option::Camera));
    trace = parser.value(longName(Option::Trace));
    traceFrames = parser.isSet(longName(Option::TraceFrames));
    if (traceFrames && trace.isEmpty())
        return PStatus::failure(u"--trace-frames needs a trace: expected --trace FILE too"_qs);
    language = parser.value(longName(Option::Language));
    if (parser.isSet(longName(Option::LogFilter)))
        logFilter = parser.value(longName(Option::LogFilter));
    if (language.isEmpty() || PTranslations::isKnown(language))
        return PStatus::Ok;
    return wrongValue(longName(Option::Language), language, u"en or ru"_qs);
}

PStatus PProgramOptions::wrongValue(const QString& option, const QString& value,
                                    const QString& expected) {
    return PStatus::failure(
        u"\"%1\" is not a value for --%2: expected %3"_qs.arg(value, option, expected));
}
