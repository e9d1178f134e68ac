// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <ctime>
#include <vector>

/// What a report says about the run, and where it will be, gathered at the program's start: when a
/// signal arrives, no memory may be allocated. A value type; any thread.
struct PCrashFacts {
    std::vector<QByteArray> folders; ///< the report's folder after those above it, outermost first
    QByteArray path;                 ///< of the report
    QByteArray header;               ///< program, command, versions, system: lines of text
    std::time_t started = 0;

    /// Of this process, from the arguments of main().
    static PCrashFacts gather(int argc, const char* const* argv, const QString& version);
};
