// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The count of the frames that a recording should have, and of those that it saw besides. A value
/// type.
struct PRecordTally {
    quint64 wanted = 0;   ///< the planned number; without one, those that arrived
    quint64 written = 0;  ///< in the files
    quint64 waiting = 0;  ///< to be written
    quint64 failed = 0;   ///< could not be written, or waited when another could not; or missing
    quint64 refused = 0;  ///< arrived while too many frames were waiting
    quint64 notTaken = 0; ///< have not arrived
    quint64 notDue = 0;   ///< besides `wanted`: between the frames of a time-lapse
    quint64 afterEnd = 0; ///< besides `wanted`: arrived when the recording had its last frame

    /// True if every frame of `wanted` is counted once among the others.
    bool isBalanced() const { return wanted == written + waiting + failed + refused + notTaken; }
};
