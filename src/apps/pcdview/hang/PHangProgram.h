// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>

/// The program in the process that PHangNotice starts. The GUI thread of that process.
namespace PHangProgram {

/// Shows a PHangWindow with the calls that come through the standard input (PHangMessage), until
/// the user closes it or that input ends, as it does when the viewer dies. `viewer` is the process
/// that waits, `endingTime` as for the window. Returns the exit code.
int run(qint64 viewer, std::chrono::milliseconds endingTime);

/// Sends the viewer the signal that ends it as usual. Does nothing if it is not, or no longer, the
/// parent of this process: its number may belong to another one.
void endViewer(qint64 viewer);

} // namespace PHangProgram
