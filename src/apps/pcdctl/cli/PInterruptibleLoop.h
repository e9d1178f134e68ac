// SPDX-License-Identifier: MIT
#pragma once

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

/// Runs events until something has happened, a timeout has expired, or the user interrupts (Ctrl-C,
/// or a termination signal). The main thread.
class PInterruptibleLoop {
public:
    /// After this the first such signal is only recorded; a second one ends the process, even if it
    /// is blocked.
    PInterruptibleLoop();

    /// True once the user has interrupted.
    bool isInterrupted() const;

    /// Runs events until the predicate is true; it is called after every batch of events, and at
    /// least a few times a second. False if the timeout expires or the user interrupts first.
    bool waitFor(const std::function<bool()>& predicate,
                 std::optional<std::chrono::milliseconds> atMost = std::nullopt);
    /// The same, but ignores interruptions for now.
    bool drain(const std::function<bool()>& predicate, std::chrono::milliseconds atMost);

private:
    bool run(const std::function<bool()>& predicate,
             std::optional<std::chrono::milliseconds> atMost, bool interruptible);

    QEventLoop m_loop;
    QTimer m_heartbeat; // checks for an interruption while there are no events
};
