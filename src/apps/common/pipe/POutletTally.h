// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The count of the live frames that an outlet saw. A value type.
struct POutletTally {
    quint64 arrived = 0;
    quint64 written = 0;   ///< whole
    quint64 waiting = 0;   ///< to be written
    quint64 dropped = 0;   ///< arrived while the reader was too slow
    quint64 unwritten = 0; ///< taken, but not written whole when the stream ended
    quint64 afterEnd = 0;  ///< arrived when no more were to be taken

    /// The frames that were taken to be written.
    quint64 taken() const { return written + waiting + unwritten; }
    /// True if every frame that arrived is counted once among the others.
    bool isBalanced() const { return arrived == taken() + dropped + afterEnd; }
};
