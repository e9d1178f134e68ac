// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

/// How fast a disk writes. Any thread.
class PDiskSpeed {
public:
    /// The result of a measurement.
    struct Result {
        PStatus status = PStatus::Ok;
        double megabytesPerSecond = 0; ///< a megabyte is a million bytes
    };

    /// Writes to the disk of a folder for half a second, or 128 MiB, whichever is less. The file
    /// has no name, or loses it before it is written, so it is gone when the program ends in
    /// whatever way. Fails with the system's reason.
    static Result measure(const QString& folder);
};
