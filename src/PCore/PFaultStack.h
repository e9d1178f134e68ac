// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

/// A second stack of a thread, for handlers of signals (SA_ONSTACK): a handler that reports a fault
/// cannot run on a stack that is exhausted. Only a program that has such a handler wants them;
/// until then, and if the thread has one already, nothing happens. Freed when the thread ends.
class PCD_EXPORT PFaultStack {
public:
    PFaultStack() = delete;

    /// From now on threads get theirs in giveThread(). Any thread.
    static void want() noexcept;
    /// Gives the calling thread its own. To be called where a thread starts, or where a thread that
    /// others have started enters; from the second time on it takes two instructions, and an atomic
    /// load in a program that wants none. If the system has no memory the thread goes without. Any
    /// thread.
    static void giveThread() noexcept {
        if (!s_isGiven)
            give();
    }

private:
    static void give() noexcept;

    // In the thread's own block, as in PCallSlot.
    [[gnu::tls_model("initial-exec")]] static __thread bool s_isGiven;
};
