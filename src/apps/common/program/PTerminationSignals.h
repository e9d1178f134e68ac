// SPDX-License-Identifier: MIT
#pragma once

/// The signals that ask the program to end: Ctrl-C, termination, hang-up. A thread
/// of its own waits for them, so that no code runs in a signal handler, and they are seen whatever
/// the main thread is stuck in.
class PTerminationSignals {
public:
    /// Begins to watch. Once, the first thing in main(): threads made earlier would still take the
    /// signals. Until the first expect() they end the program as ever. What was ignored from the
    /// start stays so: nohup, and jobs in the background of a script.
    static void watch();

    /// From here on the first signal is only noted; the next one ends the program. Any thread.
    static void expect();
    /// True once a signal has been noted. Any thread.
    static bool isNoted();
};
