// SPDX-License-Identifier: MIT
#pragma once

/// The signals that end the program: Ctrl-C, termination, hang-up. A separate thread waits for
/// them, so that no code runs in a signal handler, and they are noticed even if the main thread is
/// blocked.
class PTerminationSignals {
public:
    /// Begins to watch. Call once, first in main(): threads created earlier would still receive the
    /// signals. Until the first expect() they end the program as usual. Signals that were ignored
    /// from the start stay ignored: with nohup, and in background jobs of a script. A file that
    /// reaches the limit on sizes ends nothing from now on: writing to it fails.
    static void watch();

    /// After this the first signal is only recorded; the next one ends the program. If the program
    /// has not ended two seconds after the first, the standard error stream says what it waits for:
    /// a call to the camera may hang. Any thread.
    static void expect();
    /// True once a signal was recorded. Any thread.
    static bool isNoted();
};
