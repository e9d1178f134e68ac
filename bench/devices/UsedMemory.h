// SPDX-License-Identifier: MIT
#pragma once

/// How much memory this process uses. Any thread.
namespace UsedMemory {

/// KiB of the heap in use.
double heapKib();
/// KiB of resident memory, without code and files, which processes share.
double residentKib();

} // namespace UsedMemory
