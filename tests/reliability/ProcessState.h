// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

/// What this process holds of the system now. A value type; any thread.
struct ProcessState {
    qint64 threads = 0; ///< without those with which Qt paints, as are the descriptors
    qint64 descriptors = 0;
    qint64 heapBytes = 0;     ///< in use, as the allocator (or the sanitizer's) counts them
    qint64 residentBytes = 0; ///< of memory

    static ProcessState now();
    /// True under a sanitizer, which keeps freed memory for a while and has memory of its own, so
    /// that residentBytes is not the program's.
    static bool isSanitized();

    /// The same file descriptors as in an earlier state and no more threads. Fewer are no fault: a
    /// thread that has been joined is listed for a moment, then too.
    bool isIdleAs(const ProcessState& earlier) const {
        return threads <= earlier.threads && descriptors == earlier.descriptors;
    }
    /// In words, for messages.
    QString text() const;
    /// The names of the threads that run now.
    static QString threadNames();
};
