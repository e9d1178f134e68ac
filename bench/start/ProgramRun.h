// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A program that is started and timed. The calling thread; -1 if the program could not be started
/// or failed.
namespace ProgramRun {

/// Milliseconds from its start to its end.
double untilEnd(const std::vector<std::string>& command);

/// Milliseconds from its start until it has written a line to its standard output; then it is
/// killed.
double untilLine(const std::vector<std::string>& command);

} // namespace ProgramRun
