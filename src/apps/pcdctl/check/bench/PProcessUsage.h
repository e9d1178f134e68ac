// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What this process has of the system now. A value; any thread.
struct PProcessUsage {
    qint64 threads = 0;
    qint64 files = 0; ///< open file descriptors
    qint64 bytes = 0; ///< allocated by the process

    /// Zeros for what the system does not say.
    static PProcessUsage read();

    // What is left of something that was done this often since: "open files: 5 before, 13 after";
    // empty if not each time a thread, a file, or more than 1 MiB is left.
    QString describeThreads(const PProcessUsage& before, int times) const;
    QString describeFiles(const PProcessUsage& before, int times) const;
    QString describeMemory(const PProcessUsage& before, int times) const;
};
