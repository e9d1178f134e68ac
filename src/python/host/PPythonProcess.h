// SPDX-License-Identifier: MIT
#pragma once

/// The process in which the module was imported. Any thread.
namespace PPythonProcess {

/// Notes this process as the first one. When the module is imported.
void note();
/// True in a process that was forked from the first one: it has none of the threads that cameras
/// need, and perhaps locks that nobody releases.
bool isForked();

} // namespace PPythonProcess
