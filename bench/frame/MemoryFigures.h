// SPDX-License-Identifier: MIT
#pragma once

/// The figures of memory: none for a frame of a steady stream, and a limit for frames that wait.
class MemoryFigures {
public:
    /// Adds them to the program. Main thread.
    static void add();
};
