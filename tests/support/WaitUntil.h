// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>
#include <QtGlobal>

#include <chrono>

/// The timeout of waitUntil(). It is generous, because it passes only if something is broken. Where
/// much is broken on purpose (scripts/mutate), PCD_TEST_WAIT_MS sets a shorter one.
inline std::chrono::milliseconds longestWait() {
    const int requested = qEnvironmentVariableIntValue("PCD_TEST_WAIT_MS");
    return std::chrono::milliseconds(requested > 0 ? requested : 20'000);
}

/// Runs this thread's event loop until the predicate is true, and returns true; false on timeout.
template <typename Predicate>
bool waitUntil(Predicate predicate, std::chrono::milliseconds deadline = longestWait()) {
    return QTest::qWaitFor(predicate, int(deadline.count()));
}
