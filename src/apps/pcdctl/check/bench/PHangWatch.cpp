// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PHangWatch.h>

#include <PCore/PFaultStack.h>

#include <utility>

PHangWatch::PHangWatch(Milliseconds patience, Report report)
    : m_patience(patience)
    , m_report(std::move(report))
    // A thread of its own: the one that examines may be in a call that never returns.
    , m_thread([this] { run(); }) {
}

PHangWatch::~PHangWatch() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void PHangWatch::enter() {
    {
        const std::lock_guard lock(m_mutex);
        m_since = Clock::now();
    }
    m_changed.notify_all();
}

void PHangWatch::touch() {
    const std::lock_guard lock(m_mutex);
    if (m_since)
        m_since = Clock::now();
}

void PHangWatch::leave() {
    const std::lock_guard lock(m_mutex);
    m_since.reset();
}

void PHangWatch::run() {
    PFaultStack::giveThread();
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        const Clock::time_point now = Clock::now();
        if (!m_since) {
            m_changed.wait(lock);
        } else if (now < *m_since + m_patience) {
            m_changed.wait_until(lock, *m_since + m_patience);
        } else {
            m_report(std::chrono::duration_cast<Milliseconds>(now - *m_since));
            return;
        }
    }
}
