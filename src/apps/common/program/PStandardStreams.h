// SPDX-License-Identifier: MIT
#pragma once

/// The standard streams of the process. One thread.
namespace PStandardStreams {

/// Reserves the numbers of those streams that are closed: the next file that is opened would get
/// the number, and messages would be written into it. Using such a stream still fails. Call first
/// in main().
void reserve();

/// Keeps the standard output for data: from now on everything else that the process prints there,
/// libraries included, goes to the standard error stream. Call before other threads print. If that
/// is not possible, writing to dataOutput() fails.
void keepOutputForData();
/// The descriptor of what keepOutputForData() has kept; else that of the standard output. Any
/// thread.
int dataOutput();

} // namespace PStandardStreams
