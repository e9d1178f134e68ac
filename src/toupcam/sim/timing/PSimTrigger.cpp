// SPDX-License-Identifier: MIT
#include <toupcam/sim/timing/PSimTrigger.h>

#include <algorithm>

namespace {

constexpr unsigned endlessCount = 0xffff;

} // namespace

PSimTrigger::PSimTrigger(const PSimExternalTriggerSpec& source)
    : m_source(source) {
}

void PSimTrigger::begin(Mode mode, Time now) {
    m_mode = mode;
    m_pending = 0;
    m_since.reset();
    m_nextSignal = now + m_source.period;
    m_sent = 0;
    m_missed = 0;
}

void PSimTrigger::request(unsigned count, Time now) {
    m_pending = count;
    if (count == 0)
        m_since.reset();
    else if (!m_since)
        m_since = now;
}

bool PSimTrigger::signal(Time when) {
    if (m_mode != Mode::External)
        return false;
    if (m_since) {
        ++m_missed;
        return false;
    }
    m_pending = 1;
    m_since = when;
    return true;
}

std::optional<PSimTrigger::Time> PSimTrigger::nextSignal() const {
    const bool more = m_source.count == 0 || m_sent < m_source.count;
    if (m_mode != Mode::External || m_source.period.count() == 0 || !more)
        return std::nullopt;
    return m_nextSignal;
}

void PSimTrigger::advance(Time now) {
    for (auto next = nextSignal(); next && *next <= now; next = nextSignal()) {
        signal(*next);
        ++m_sent;
        m_nextSignal += m_source.period;
    }
}

void PSimTrigger::beginNoEarlier(Time limit) {
    if (m_since)
        m_since = std::max(*m_since, limit);
}

void PSimTrigger::taken(Time now) {
    if (m_pending != endlessCount)
        --m_pending;
    m_since.reset();
    if (m_pending > 0)
        m_since = now;
}
