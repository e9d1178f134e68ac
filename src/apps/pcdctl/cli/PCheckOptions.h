// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

/// The options that only the command `check` has. A value; any thread.
struct PCheckOptions {
    bool listOnly = false;
    QStringList filters; ///< patterns of rule ids, with * and ?; empty: all rules
    QStringList allowed; ///< hazards
    int iterations = 1;
    QString junitFile; ///< empty: none

    /// What rules may need and must not be done without the user: unplug the camera, warm or cool
    /// it, take long.
    static const QStringList& hazards();

    /// Takes these options from a parser that has them all. Fails with what is wrong and what was
    /// expected.
    PStatus read(const QCommandLineParser& parser);
};
