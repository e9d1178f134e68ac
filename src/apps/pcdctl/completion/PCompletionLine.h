// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlSyntax.h>

/// A command line that the user is still typing: what it says so far, and what its last word
/// begins. The main thread.
class PCompletionLine {
public:
    /// What the last word begins.
    enum class Part { Command, Option, OptionValue, Argument };

    /// The words after the program's name, without quotes; the last one is being typed, and empty
    /// after a blank.
    explicit PCompletionLine(const QStringList& words);

    Part part() const { return m_part; }
    /// The command, or null if there is none yet, or no such command.
    const PCtlSyntax::CommandSyntax* command() const { return m_command; }
    /// The complete words after the command.
    const QStringList& arguments() const { return m_arguments; }
    /// The long name of the option whose value is being typed.
    const QString& option() const { return m_option; }
    /// The last word: what belongs to its option, such as "--camera=", and what follows.
    const QString& start() const { return m_start; }
    const QString& typed() const { return m_typed; }

    /// True if the option, by its long name, was given before the last word.
    bool isGiven(const QString& option) const { return m_parser.isSet(option); }
    /// All values of an option before the last word.
    QStringList values(const QString& option) const { return m_parser.values(option); }
    /// The options that say which cameras there are, and which one is meant.
    PCtlOptions cameraOptions() const;

private:
    void readLastWord(bool mayBeOption);
    void splitAt(qsizetype length, const QString& option);

    QCommandLineParser m_parser;
    Part m_part = Part::Argument;
    const PCtlSyntax::CommandSyntax* m_command = nullptr;
    QStringList m_arguments;
    QString m_option;
    QString m_start;
    QString m_typed;
};
