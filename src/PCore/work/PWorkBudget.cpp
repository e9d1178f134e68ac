// SPDX-License-Identifier: MIT
#include <PCore/work/PWorkBudget.h>

bool PWorkBudget::take(std::size_t cost, std::size_t held) {
    const std::lock_guard lock(m_mutex);
    if (held > 0 && m_taken + cost > m_limit)
        return false;
    m_taken += cost;
    return true;
}

void PWorkBudget::giveBack(std::size_t cost) {
    const std::lock_guard lock(m_mutex);
    m_taken -= cost;
}
