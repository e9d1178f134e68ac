// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

class PLogSink;

/// Writes a report when the program is ended by a signal that stands for a fault of it: SEGV, ABRT,
/// BUS, FPE or ILL. The report is a text in PCrashFolder, with the stack, the versions, the camera
/// SDK, the newest calls to it and the newest log records; the standard error stream says where it
/// is, and nothing is sent anywhere. Then the signal ends the program as usual. A program that ends
/// in any other way leaves no file.
namespace PCrashReport {

/// Begins to watch for the signals. Call once, early in main(). A signal that is handled or ignored
/// already is left alone: a sanitizer writes a report of its own.
void install(int argc, const char* const* argv, const QString& version);

/// What is known about the camera SDK, in one line. The main thread.
void setSdk(const QString& description);

/// The sink that keeps the newest log records for the report; add it to the log. Any thread.
const std::shared_ptr<PLogSink>& logSink();

} // namespace PCrashReport
