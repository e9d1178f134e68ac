// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Thrown by a reader on invalid data, and caught by it: never leaves the library.
struct PReadFault {
    /// Offset in bytes from the beginning of the data.
    qsizetype offset;
    /// The reason, in English.
    QString what;
};
