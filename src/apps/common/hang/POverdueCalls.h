// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>
#include <PCore/call/PCallWatchdog.h>

#include <QString>

/// What the programs say about calls to cameras that do not return (PCallWatchdog). Any thread.
namespace POverdueCalls {

/// The time after which a call is reported: the environment variable PCD_CALL_SECONDS, or less
/// than a second.
std::chrono::milliseconds patience();
/// Fails, with a sentence for the user, if the variable's value is ignored.
PStatus checkEnvironment();
/// "waiting for F(1) to return, 1.5 s so far", or "F(1) has returned after 7 s".
QString toText(const PCallWatchdog::Call& call);
/// The calls that are overdue now: "F(1) (1.5 s so far), G(2) (3 s so far)"; empty if there are
/// none.
QString names();

} // namespace POverdueCalls
