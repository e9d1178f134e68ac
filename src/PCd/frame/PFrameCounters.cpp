// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameCounters.h>

void PFrameCounters::enter() {
    const std::lock_guard lock(m_mutex);
    ++m_ledger.produced;
    ++m_ledger.waiting;
}

void PFrameCounters::settle(PFrameOutcome outcome) {
    const std::lock_guard lock(m_mutex);
    --m_ledger.waiting;
    ++m_ledger.outcomes[std::size_t(outcome)];
}

void PFrameCounters::enterAndSettle(PFrameOutcome outcome, quint64 count) {
    const std::lock_guard lock(m_mutex);
    m_ledger.produced += count;
    m_ledger.outcomes[std::size_t(outcome)] += count;
}

void PFrameCounters::countSnapshot() {
    const std::lock_guard lock(m_mutex);
    ++m_ledger.snapshots;
}

PFrameLedger PFrameCounters::ledger() const {
    const std::lock_guard lock(m_mutex);
    return m_ledger;
}
