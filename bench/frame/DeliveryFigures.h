// SPDX-License-Identifier: MIT
#pragma once

/// The figures of the way from the data callback to the main thread: how long it takes, and what it
/// costs there.
class DeliveryFigures {
public:
    /// Adds them to the program. Main thread.
    static void add();
};
