// SPDX-License-Identifier: MIT
#pragma once

/// Counts what this program allocates: a program with this class has its own malloc() and mmap(),
/// which call the C library's. Any thread.
class LargeAllocations {
public:
    /// Allocations of more than 64 KiB since the program began, from the heap or from the system,
    /// by all threads and libraries. The C library's own calls of mmap(), for a large malloc(), are
    /// not counted again.
    static long count();
};
