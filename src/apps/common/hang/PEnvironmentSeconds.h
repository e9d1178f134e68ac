// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <chrono>

/// Times that the user can set by an environment variable, in seconds. Any thread, while none
/// changes the environment.
namespace PEnvironmentSeconds {

/// The variable's value if it is above 0 and an hour at most, rounded up to a millisecond; else
/// `usual`.
std::chrono::milliseconds read(const char* variable, std::chrono::milliseconds usual);
/// Fails, with a sentence for the user, if the variable has a value that read() ignores.
PStatus check(const char* variable);

} // namespace PEnvironmentSeconds
