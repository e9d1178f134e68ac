// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Ends the process for certain: if this object still exists after a time, because a camera's
/// library does not return, the process ends with a message, and nothing else is done. Create it
/// when everything that must not be lost is done. The main thread.
class PExitDeadline {
public:
    /// `message` is what the standard error stream then gets, with the calls that are overdue;
    /// `code` is the exit code.
    PExitDeadline(std::chrono::milliseconds time, const QString& message, int code);
    ~PExitDeadline();
    PExitDeadline(const PExitDeadline&) = delete;
    PExitDeadline& operator=(const PExitDeadline&) = delete;

private:
    void wait(std::chrono::milliseconds time, const QString& message, int code);

    std::mutex m_mutex; // guards m_isMet, between the main thread and the one that waits
    std::condition_variable m_changed;
    bool m_isMet = false;
    std::thread m_thread;
};
