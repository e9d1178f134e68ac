// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <mutex>

/// A budget for the frames that wait for the disk, shared by several queues. Any thread.
class PWriteMemory {
public:
    /// `limit`: bytes, in all.
    explicit PWriteMemory(std::size_t limit)
        : m_limit(limit) {}

    /// Takes this many bytes for a queue that holds `held` bytes already. False if they exceed the
    /// limit, unless the queue holds nothing: each can then always make progress.
    bool take(std::size_t bytes, std::size_t held);
    /// Returns bytes that take() has given.
    void giveBack(std::size_t bytes);

    /// Bytes.
    std::size_t limit() const { return m_limit; }

private:
    const std::size_t m_limit;
    std::mutex m_mutex; // frames come and go on the threads of several cameras and writers
    std::size_t m_bytes = 0;
};
