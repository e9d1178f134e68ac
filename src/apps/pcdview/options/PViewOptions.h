// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/program/PProgramOptions.h>

#include <chrono>

/// The options of the command line. A value; the main thread.
struct PViewOptions : PProgramOptions {
    QString theme; ///< empty: the one chosen last
    QString grab;  ///< picture file of the window; empty: none
    std::chrono::milliseconds grabAfter{2000};

    /// The arguments for restarting the program: these, but with the simulated cameras of the
    /// built-in scene. Without the program's name.
    static QStringList withSimulatedCameras(QStringList arguments);
    /// Reads a command line, with the program's name first. Fails with what is wrong and what was
    /// expected. `answer` is set to the text to print instead of running (help, version), or stays
    /// empty.
    static PStatus parse(const QStringList& arguments, PViewOptions& options, QString& answer);
};
