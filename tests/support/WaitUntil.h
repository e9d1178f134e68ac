// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

#include <chrono>

/// Runs this thread's event loop until the predicate holds, and returns true then; false if it does
/// not by the deadline, which is generous: nobody waits for it unless something is broken.
template <typename Predicate>
bool waitUntil(Predicate predicate, std::chrono::milliseconds deadline = std::chrono::seconds(20)) {
    return QTest::qWaitFor(predicate, int(deadline.count()));
}
