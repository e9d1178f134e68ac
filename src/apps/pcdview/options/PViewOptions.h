// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/program/PProgramOptions.h>

#include <chrono>

/// The options of the command line. A value type; the main thread.
struct PViewOptions : PProgramOptions {
    QString profile; ///< file to offer to the camera; empty: none
    QString theme;   ///< empty: the one chosen last
    QString grab;    ///< picture file of the window; empty: none
    std::chrono::milliseconds grabAfter{2000};
    qint64 hangingViewer = 0; ///< the process whose calls PHangProgram is to show; 0: none

    /// What the program is for, in one sentence.
    static QString summary();
    /// What the argument of the command line, a file, is for.
    static QString profileHelp();
    /// All options, in the order help shows them.
    static QList<QCommandLineOption> all();

    /// The arguments for restarting the program: the same, but with the simulated cameras of the
    /// built-in scene. Without the program's name.
    static QStringList withSimulatedCameras(QStringList arguments);
    /// The command line, with the program's file, of a process that runs PHangProgram for this one.
    /// Empty with --grab: nobody looks at the window.
    QStringList hangNoticeCommand() const;
    /// Reads a command line that begins with the program's name. Fails with the error and what was
    /// expected. `answer` is set to the text to print instead of running (help, version, manual
    /// page), or stays empty.
    static PStatus parse(const QStringList& arguments, PViewOptions& options, QString& answer);
};
