// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The count of the frames a recording wants. A value.
struct PRecordTally {
    quint64 wanted = 0;   ///< the set number; without one, those that came
    quint64 written = 0;  ///< in the files
    quint64 waiting = 0;  ///< to be written
    quint64 failed = 0;   ///< could not be written, or waited when another could not
    quint64 refused = 0;  ///< came while too much was waiting
    quint64 notTaken = 0; ///< have not come

    /// True if every frame that is wanted is accounted for, once.
    bool isBalanced() const { return wanted == written + waiting + failed + refused + notTaken; }
};
