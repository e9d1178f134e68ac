// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

/// Ends the process with a message if what it watches hangs, and prints what was running if the
/// process crashes. One for the process; the thread that owns it, unless noted.
class Watchdog {
public:
    explicit Watchdog(std::chrono::seconds limit);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// This runs from now on, until the next one; if it takes longer than the limit, the process
    /// aborts.
    void watch(const std::string& what);
    /// Nothing is watched any more.
    void rest() { watch(std::string()); }

private:
    void run();

    const std::chrono::seconds m_limit;
    std::mutex m_mutex; // guards all below, which the watching thread reads
    std::condition_variable m_changed;
    std::string m_what;
    std::chrono::steady_clock::time_point m_since;
    bool m_stopping = false;
    std::thread m_thread;
};
