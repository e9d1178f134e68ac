// SPDX-License-Identifier: MIT
#pragma once

/// The figures of the data callback: what a frame costs the SDK's thread.
class CallbackFigures {
public:
    /// Adds them to the program. Main thread.
    static void add();
};
