// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameAccounts.h>

void PFrameAccounts::enter() {
    const std::lock_guard lock(m_mutex);
    ++m_ledger.produced;
    ++m_ledger.waiting;
}

void PFrameAccounts::settle(PFrameFate fate) {
    const std::lock_guard lock(m_mutex);
    --m_ledger.waiting;
    ++m_ledger.fates[std::size_t(fate)];
}

void PFrameAccounts::enterAndSettle(PFrameFate fate, quint64 count) {
    const std::lock_guard lock(m_mutex);
    m_ledger.produced += count;
    m_ledger.fates[std::size_t(fate)] += count;
}

void PFrameAccounts::countSnapshot() {
    const std::lock_guard lock(m_mutex);
    ++m_ledger.snapshots;
}

PFrameLedger PFrameAccounts::ledger() const {
    const std::lock_guard lock(m_mutex);
    return m_ledger;
}
