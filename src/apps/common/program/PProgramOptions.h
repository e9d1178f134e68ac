// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QCommandLineParser>
#include <QStringList>

#include <optional>

/// The options that every program has. A value type; any thread.
struct PProgramOptions {
    QString sdk = u"auto"_qs;
    QString scene; ///< file; empty: none
    QStringList pluginPaths;
    QString camera;                   ///< index, id or beginning of an id; empty: the first
    QString trace;                    ///< file for a trace of the SDK calls; empty: none
    bool traceFrames = false;         ///< with the pixels of all frames
    QString language;                 ///< empty: as the environment says
    std::optional<QString> logFilter; ///< none: as the environment says

    /// Which option.
    enum class Option { Sdk, Scene, PluginPath, Camera, Language, LogFilter, Trace, TraceFrames };
    /// The declaration of an option for a parser. The help text and the name of its value are the
    /// program's own; an option without a name of a value takes none.
    static QCommandLineOption makeOption(Option option, const QString& help,
                                         const QString& valueName);

    /// The option that prints the program's manual page, for the build. No help shows it.
    static QCommandLineOption manualOption();
    static bool isManualWanted(const QCommandLineParser& parser);

    /// Takes these options from a parser that has them all. Fails with what is wrong and what was
    /// expected, also if one of `otherTexts`, further options of the program, is empty.
    PStatus read(const QCommandLineParser& parser, const QStringList& otherTexts);

    /// The failure of an option with a value that it cannot have.
    static PStatus wrongValue(const QString& option, const QString& value, const QString& expected);
};
