// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// While this object exists, its thread gets no block of this size or a larger one from new.
class NoLargeMemory {
public:
    explicit NoLargeMemory(std::size_t size);
    ~NoLargeMemory();
    NoLargeMemory(const NoLargeMemory&) = delete;
    NoLargeMemory& operator=(const NoLargeMemory&) = delete;
};

/// While this object exists, its thread gets from new as many blocks as `granted`, not the next
/// one, and all others.
class OneRefusal {
public:
    explicit OneRefusal(int granted);
    ~OneRefusal();
    OneRefusal(const OneRefusal&) = delete;
    OneRefusal& operator=(const OneRefusal&) = delete;

    /// Whether a block was refused.
    static bool hasHappened();
};
