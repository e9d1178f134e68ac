// SPDX-License-Identifier: MIT
#pragma once

/// The standard streams of the process. One thread.
namespace PStandardStreams {

/// Reserves the numbers of those streams that are closed: the next file that is opened would get
/// the number, and messages would be written into it. Using such a stream still fails. Call first
/// in main().
void reserve();

} // namespace PStandardStreams
