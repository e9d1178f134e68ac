// SPDX-License-Identifier: MIT
#include <PCore/call/PCallWatchdog.h>

#include <PCore/PFaultStack.h>
#include <PCore/call/PCallSlot.h>

#include <algorithm>
#include <utility>

namespace {

using CallClock = std::chrono::steady_clock;

std::chrono::milliseconds timeSince(CallClock::time_point begin, CallClock::time_point now) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(now - begin);
}

/// The overdue calls of all watchdogs.
class OverdueCalls {
public:
    static OverdueCalls& instance() {
        static auto* const calls = new OverdueCalls; // other threads may outlive static objects
        return *calls;
    }

    void add(const PCallSlot* slot, const QString& text, CallClock::time_point since) {
        const std::lock_guard lock(m_mutex);
        m_entries.push_back({slot, text, since});
    }

    void remove(const PCallSlot* slot) {
        const std::lock_guard lock(m_mutex);
        const auto isOfSlot = [slot](const Entry& entry) { return entry.slot == slot; };
        m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), isOfSlot),
                        m_entries.end());
    }

    QList<PCallWatchdog::Call> all() const {
        const std::lock_guard lock(m_mutex);
        QList<PCallWatchdog::Call> calls;
        for (const Entry& entry : m_entries)
            calls.append({entry.text, timeSince(entry.since, CallClock::now()), false});
        return calls;
    }

private:
    struct Entry {
        const PCallSlot* slot;
        QString text;
        CallClock::time_point since;
    };

    mutable std::mutex m_mutex; // guards m_entries, which watchdogs write and any thread reads
    std::vector<Entry> m_entries;
};

} // namespace

PCallWatchdog::PCallWatchdog(Report report, std::chrono::milliseconds patience)
    : m_report(std::move(report))
    , m_patience(patience)
    // A thread of its own: any other may be in the call that does not return.
    , m_thread([this] { run(); }) {
}

PCallWatchdog::~PCallWatchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_ending.notify_all();
    m_thread.join();
    for (const Watched& watched : m_watched)
        OverdueCalls::instance().remove(watched.slot);
}

QList<PCallWatchdog::Call> PCallWatchdog::overdueCalls() {
    return OverdueCalls::instance().all();
}

void PCallWatchdog::run() {
    PFaultStack::giveThread();
    constexpr int looksUntilReport = 3; // so that the time is known well enough
    // Not without a pause, however short the patience.
    const auto pause = std::max(m_patience / looksUntilReport, std::chrono::milliseconds(1));
    std::unique_lock lock(m_mutex);
    while (!m_ending.wait_for(lock, pause, [this] { return m_isEnding; })) {
        lock.unlock();
        look(Clock::now());
        lock.lock();
    }
    lock.unlock();
    reportReturned(Clock::now());
}

/// So that each call that was reported is known to have returned, or not to have.
void PCallWatchdog::reportReturned(Clock::time_point now) {
    for (Watched& watched : m_watched) {
        if (!watched.text.isEmpty() && !watched.slot->isMarked())
            begin(watched, now);
    }
}

void PCallWatchdog::look(Clock::time_point now) {
    const std::vector<PCallSlot*> found = PCallSlot::all();
    for (std::size_t i = m_watched.size(); i < found.size(); ++i)
        m_watched.push_back({found[i], now, m_patience, {}});
    for (Watched& watched : m_watched)
        lookAt(watched, now);
}

void PCallWatchdog::lookAt(Watched& watched, Clock::time_point now) {
    if (watched.slot->isMarked())
        reportIfDue(watched, now);
    else
        begin(watched, now);
}

/// What was marked has ended, and another call may have begun.
void PCallWatchdog::begin(Watched& watched, Clock::time_point now) {
    const QString over = std::exchange(watched.text, QString());
    const auto time = timeSince(watched.since, now);
    watched.since = now;
    watched.nextReport = m_patience;
    watched.slot->mark();
    if (over.isEmpty())
        return;
    OverdueCalls::instance().remove(watched.slot);
    m_report({over, time, true});
}

void PCallWatchdog::reportIfDue(Watched& watched, Clock::time_point now) {
    const auto time = timeSince(watched.since, now);
    if (time < watched.nextReport)
        return;
    if (watched.text.isEmpty()) {
        watched.text = watched.slot->text();
        if (watched.text.isEmpty())
            return; // it has just ended
        OverdueCalls::instance().add(watched.slot, watched.text, watched.since);
    }
    watched.nextReport = 2 * time;
    m_report({watched.text, time, false});
}
