// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <functional>

/// Calls that let no exception out: for thread functions and the event loop. On the caller's
/// thread.
namespace PGuardedCall {

/// Returns what the function returns; after an exception, a failure with its text.
PCD_EXPORT PStatus status(const std::function<PStatus()>& function) noexcept;
/// Calls the function; an exception is logged.
PCD_EXPORT void logged(const std::function<void()>& function) noexcept;

} // namespace PGuardedCall
