// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// What this process has of the system now. A value; any thread.
struct PProcessUsage {
    qint64 threads = 0;
    qint64 files = 0; ///< open file descriptors
    qint64 bytes = 0; ///< allocated by the process

    /// Zeros for what the system does not say.
    static PProcessUsage read();
};
