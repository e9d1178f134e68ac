// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <QCommandLineParser>

/// Reads the program's arguments. The main thread.
class PCtlParser {
public:
    /// Reads them; the first is the program's name. On wrong usage the outcome names the word and
    /// what was expected.
    PCtlOutcome parse(const QStringList& arguments);

    /// What to print before the program ends, if the user requested only help or the version.
    const QString& answer() const { return m_answer; }
    /// What the user requested, if there is no answer() and the outcome is done.
    const PCtlOptions& options() const { return m_options; }

private:
    PCtlOutcome parseReplay(const QStringList& arguments);
    PCtlOutcome readOptions(const QCommandLineParser& parser);
    PCtlOutcome readNumbers(const QCommandLineParser& parser);
    PCtlOutcome readFiles(const QCommandLineParser& parser);

    PCtlOptions m_options;
    QString m_answer;
};
