// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The manual page of the program. The main thread.
class PCtlManual {
public:
    /// The page, from the same tables as --help.
    static QString page();
};
