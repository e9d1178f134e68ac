// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Lines on the standard error stream for when a thread hangs: they wait for no lock of the
/// stream, which that thread may hold. Any thread.
namespace PStderrLine {

/// Writes a line; on a terminal over the status line, if one is shown.
void write(const QString& line);

} // namespace PStderrLine
