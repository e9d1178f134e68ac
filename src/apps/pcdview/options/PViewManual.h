// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The manual page of the program. The main thread.
class PViewManual {
public:
    /// The page, from the same table as --help.
    static QString page();
};
