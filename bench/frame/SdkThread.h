// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// A thread such as the SDK calls back on. Main thread.
class SdkThread {
public:
    using Work = std::function<void()>;

    /// Runs the work on a new thread and the main thread's event loop meanwhile, until the work has
    /// ended. Throws again what it threw.
    static void run(const Work& work);

    /// Runs the work this many times on the calling thread, and after each time waits until
    /// `isReady` returns true.
    static void repeat(int times, const Work& work, const std::function<bool()>& isReady);

    /// Repeats the work on a new thread. Returns the milliseconds of processor time that it took
    /// each time, without the wait.
    static double measureMs(int times, const Work& work, const std::function<bool()>& isReady);
};
