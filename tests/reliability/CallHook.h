// SPDX-License-Identifier: MIT
#pragma once

#include <reliability/CallFault.h>

#include <QtGlobal>

/// Follows the SDK calls of a session in the simulator, and lets faults happen at some of them. One
/// for the process; any thread.
namespace CallHook {

/// From now on calls are followed and counted from 1, and these faults happen.
void begin(const CallFaults& faults);
/// Follows no more; what was counted stays until the next begin().
void end();

/// The calls so far, in their order.
std::vector<SdkCall> calls();
/// The number of these calls so far, also of those that failed.
std::size_t count(const std::string& function);
/// The number of faults that have happened.
std::size_t happened();
/// The number of data callbacks so far that had data, and of answers of one-push white balances.
quint64 dataCallbacks();
quint64 balanceCallbacks();

/// While one exists, calls of this thread are neither counted nor faulted: for checks.
class Pause {
public:
    Pause();
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

} // namespace CallHook
