// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/program/PProgramOptions.h>

#include <chrono>

/// The options of the command line. A value; the main thread.
struct PViewOptions : PProgramOptions {
    QString theme; ///< empty: the one chosen last
    QString grab;  ///< picture file of the window; empty: none
    std::chrono::milliseconds grabAfter{2000};

    /// The words to start the program again with: these, but with simulated cameras, of the
    /// built-in scene. The program's name is left out.
    static QStringList withSimulatedCameras(QStringList arguments);
    /// Reads the words of a command line, the program's name first. Fails with what is wrong and
    /// what was expected. `answer` gets the text to print instead of a run (help, version), or
    /// stays empty.
    static PStatus parse(const QStringList& arguments, PViewOptions& options, QString& answer);
};
