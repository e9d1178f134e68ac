// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

/// The signals that end the program: Ctrl-C, termination, hang-up. A separate thread waits for
/// them, so that no code runs in a signal handler, and they are noticed even if the main thread is
/// blocked.
class PTerminationSignals {
public:
    /// Begins to watch. Call once, first in main(): threads created earlier would still receive the
    /// signals. Until the first expect() they end the program as usual. Signals that were ignored
    /// from the start stay ignored: with nohup, and in background jobs of a script. A file that
    /// reaches the limit on sizes ends nothing from now on: writing to it fails. If the system
    /// starts no thread, signals keep ending the program as usual.
    static void watch();

    /// After this the first signal is only recorded; the next one ends the program. If a call to a
    /// camera is overdue at the first, or the program has not ended two seconds later, the standard
    /// error stream says what it waits for. Any thread.
    static void expect();
    /// The same, for a program that must end at the first signal: `giveUp` is called, on a thread
    /// of its own, if acknowledge() was not called within `time` after that report. Call this once.
    /// Any thread.
    static void expect(std::chrono::milliseconds time, std::function<void()> giveUp);
    /// True once a signal was recorded. Any thread.
    static bool isNoted();
    /// The program is ending because isNoted(). Any thread.
    static void acknowledge();
    /// True once acknowledge() was called. Any thread.
    static bool isAcknowledged();
};
