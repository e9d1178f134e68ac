// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <mutex>

/// The memory of frames that wait for the disk, shared by all that write them. Any thread.
class PWriteMemory {
public:
    /// `limit`: bytes, in all.
    explicit PWriteMemory(std::size_t limit)
        : m_limit(limit) {}

    /// Takes so many bytes for one who holds `held` bytes already. False if there is no room; who
    /// holds none gets it in any case, so that each goes on, however much the others hold.
    bool take(std::size_t bytes, std::size_t held);
    void giveBack(std::size_t bytes);

    std::size_t limit() const { return m_limit; }

private:
    const std::size_t m_limit;
    std::mutex m_mutex; // frames come and go on the threads of several cameras and writers
    std::size_t m_bytes = 0;
};
