// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <sys/mman.h>

/// Zeros that can only be read. However many they are, they need no memory before they are read,
/// and hardly any then. One thread.
class PSimZeroPages {
public:
    explicit PSimZeroPages(std::size_t bytes)
        : m_bytes(bytes)
        , m_start(mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1,
                       0)) {}
    ~PSimZeroPages() {
        if (data() != nullptr)
            munmap(m_start, m_bytes);
    }
    PSimZeroPages(const PSimZeroPages&) = delete;
    PSimZeroPages& operator=(const PSimZeroPages&) = delete;

    /// Null if the process has no addresses left for them.
    const void* data() const { return m_start == MAP_FAILED ? nullptr : m_start; }

private:
    std::size_t m_bytes;
    void* m_start;
};
