// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <chrono>

/// Runs this thread's event loop until the predicate is true, and returns true; false on timeout.
/// Like waitUntil(), but it looks again after a fifth of a millisecond instead of ten: thousands of
/// sessions wait a dozen times each.
template <typename Predicate>
bool waitShortly(Predicate predicate, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (!predicate()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QThread::usleep(200);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}
