// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QList>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

class PCallSlot;

/// Watches the calls that PNamedCall marks, of all threads, and reports each that does not return:
/// within a second, again each time it has taken twice as long, and when it returned after all. A
/// program has one. Any thread.
class PCD_EXPORT PCallWatchdog {
public:
    /// A call that takes long.
    struct Call {
        QString text; ///< "Camera_setGain(0x55a0, 3)"
        /// Since it was first seen, up to a quarter of a second after it began.
        std::chrono::milliseconds time{};
        bool isOver = false; ///< it has returned
    };
    /// Called on the watchdog's thread. It must not wait for a thread that may be in such a call,
    /// for example for a lock that one holds.
    using Report = std::function<void(const Call& call)>;

    /// Begins. `patience`: the time after which a call is reported.
    explicit PCallWatchdog(Report report,
                           std::chrono::milliseconds patience = std::chrono::milliseconds(750));
    /// Ends; a call that was reported and has returned since is reported before.
    ~PCallWatchdog();
    PCallWatchdog(const PCallWatchdog&) = delete;
    PCallWatchdog& operator=(const PCallWatchdog&) = delete;

    /// The calls that were reported and have not returned, those of all watchdogs of the process.
    static QList<Call> overdueCalls();

private:
    using Clock = std::chrono::steady_clock;
    struct Watched {
        PCallSlot* slot = nullptr;
        Clock::time_point since;
        std::chrono::milliseconds nextReport{};
        QString text; ///< empty until it is reported
    };

    void run();
    void look(Clock::time_point now);
    void lookAt(Watched& watched, Clock::time_point now);
    void reportIfDue(Watched& watched, Clock::time_point now);
    void begin(Watched& watched, Clock::time_point now);
    void reportReturned(Clock::time_point now);

    const Report m_report;
    const std::chrono::milliseconds m_patience;
    std::vector<Watched> m_watched; ///< by its thread only

    std::mutex m_mutex; // guards m_isEnding, between the thread and the destructor
    std::condition_variable m_ending;
    bool m_isEnding = false;
    std::thread m_thread; ///< last: it uses the others
};
