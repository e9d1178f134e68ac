// SPDX-License-Identifier: MIT
#include <toupcam/sim/timing/PSimShutter.h>

#include <algorithm>

PSimShutter::PSimShutter(const PSimExternalTriggerSpec& source)
    : m_trigger(source) {
}

void PSimShutter::start(Time now, const PSimPace& pace) {
    m_pace = pace;
    m_pacer.start(now);
    m_trigger.begin(pace.mode, now);
}

void PSimShutter::change(Time now, const PSimPace& pace) {
    if (pace.mode != m_pace.mode) {
        settle(now);
        m_pacer.pauseUntil(now);
        m_trigger.begin(pace.mode, now);
    } else if (isTriggered()) {
        m_trigger.beginNoEarlier(now - pace.period);
    } else {
        m_pacer.changePeriod(now, m_pace.period, pace.period);
    }
    m_pace = pace;
}

std::optional<PSimShutter::Time> PSimShutter::due() const {
    if (!isTriggered())
        return m_pacer.due(m_pace.period);
    const std::optional<Time> since = m_trigger.exposingSince();
    return since ? std::optional<Time>(*since + m_pace.period) : std::nullopt;
}

bool PSimShutter::isDue(Time now) {
    m_trigger.advance(now);
    const std::optional<Time> when = due();
    return when && now >= *when;
}

std::optional<PSimShutter::Time> PSimShutter::nextTime() const {
    const std::optional<Time> frame = due();
    const std::optional<Time> signal = m_trigger.nextSignal();
    return frame && signal ? std::min(*frame, *signal) : frame ? frame : signal;
}

bool PSimShutter::take(Time now) {
    if (!isDue(now))
        return false;
    if (isTriggered()) {
        m_pacer.produceNow(now);
        m_trigger.taken(now);
    } else {
        m_pacer.settle(now, m_pace.period);
    }
    return true;
}

void PSimShutter::settle(Time now) {
    if (!isTriggered())
        m_pacer.settle(now, m_pace.period);
}

std::uint64_t PSimShutter::producedBy(Time now) const {
    return isTriggered() ? produced() : m_pacer.producedBy(now, m_pace.period);
}
