// SPDX-License-Identifier: MIT
#pragma once

class PCrashWriter;

/// The newest calls to cameras (PNamedCall) in a report. Any thread, also in a signal handler.
namespace PCrashCalls {

/// Writes a line for each thread that made any, and one for each of its newest calls, oldest first.
/// Calls that have not returned are marked.
void writeTo(PCrashWriter& writer);

} // namespace PCrashCalls
