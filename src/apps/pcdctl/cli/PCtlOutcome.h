// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// How a step of the program ended: its exit code, and a message for the user if not 0. A value
/// type.
struct PCtlOutcome {
    /// The exit codes, as the help documents them.
    enum Code { Done = 0, Failed = 1, WrongUsage = 2, NotFound = 3, Warned = 4 };

    Code code = Done;
    QString message;

    bool isDone() const { return code == Done; }

    static PCtlOutcome failed(const QString& message) { return {Failed, message}; }
    static PCtlOutcome wrongUsage(const QString& message) { return {WrongUsage, message}; }
    static PCtlOutcome notFound(const QString& message) { return {NotFound, message}; }
    static PCtlOutcome warned(const QString& message) { return {Warned, message}; }
};
