// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>
#include <QtGlobal>

#include <chrono>

/// How long waitUntil() waits for what does not come: generous, as nobody waits for it unless
/// something is broken. Where much is broken on purpose (scripts/mutate), PCD_TEST_WAIT_MS says
/// less.
inline std::chrono::milliseconds longestWait() {
    const int wanted = qEnvironmentVariableIntValue("PCD_TEST_WAIT_MS");
    return std::chrono::milliseconds(wanted > 0 ? wanted : 20'000);
}

/// Runs this thread's event loop until the predicate holds, and returns true then; false if it does
/// not by the deadline.
template <typename Predicate>
bool waitUntil(Predicate predicate, std::chrono::milliseconds deadline = longestWait()) {
    return QTest::qWaitFor(predicate, int(deadline.count()));
}
