// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/system/PSystemTree.h>

#include <optional>

/// The clocks of the computer. A value; any thread.
struct PSystemClock {
    QString source; ///< what the kernel counts time with, such as "tsc"; empty if unknown
    std::optional<bool> isSynchronised; ///< with a time server; nothing if unknown

    /// Reads both. In a tree that is not the running system, "clock-status" has the status word
    /// that adjtimex() would return, as a decimal number.
    static PSystemClock read(const PSystemTree& system);
};
