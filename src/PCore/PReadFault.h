// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Thrown by a reader at what it cannot read, and caught by it: never leaves the library.
struct PReadFault {
    /// Bytes from the beginning of what is read.
    qsizetype offset;
    /// The reason, in English.
    QString what;
};
