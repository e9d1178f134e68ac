// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>

#include <QCommandLineParser>
#include <QList>

/// The commands and options of the program as data. The main thread.
namespace PCtlSyntax {

/// One command: its name, its options and its help.
struct CommandSyntax {
    PCtlOptions::Command command;
    QString name;
    QString summary;
    QString examples;
    QString words = {}; ///< what follows the command, as help shows it
    int leastWords = 0;
    int mostWords = 0;
};

/// All commands, in the order help shows them.
const QList<CommandSyntax>& commands();
/// The command of this name, or null.
const CommandSyntax* findCommand(const QString& name);

/// One option, and the commands that take it.
struct OptionSyntax {
    QList<PCtlOptions::Command> commands;
    QCommandLineOption option;
};

/// All options but --help and --version, in the order help shows them.
const QList<OptionSyntax>& options();
/// --help and --version.
QList<QCommandLineOption> helpOptions();
/// The option with this name, long or short and without dashes, or null.
const OptionSyntax* findOption(const QString& name);
/// The names of the commands that take an option.
QStringList commandsWith(const OptionSyntax& option);

/// Gives a parser the options of this command, or of all commands without one.
void addOptions(QCommandLineParser& parser, const CommandSyntax* command);

/// What the program is for, in one sentence.
QString summary();
/// What the exit codes mean, from 0.
const QStringList& exitCodes();

/// The text of --help: of a command, or of the program without one: the commands, and the options
/// that all of them take.
QString helpText(const CommandSyntax* command);

} // namespace PCtlSyntax
