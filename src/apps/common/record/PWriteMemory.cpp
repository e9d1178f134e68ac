// SPDX-License-Identifier: MIT
#include <apps/common/record/PWriteMemory.h>

bool PWriteMemory::take(std::size_t bytes, std::size_t held) {
    const std::lock_guard lock(m_mutex);
    if (held > 0 && m_bytes + bytes > m_limit)
        return false;
    m_bytes += bytes;
    return true;
}

void PWriteMemory::giveBack(std::size_t bytes) {
    const std::lock_guard lock(m_mutex);
    m_bytes -= bytes;
}
