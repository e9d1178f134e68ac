// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

/// Notices that a driver does not return. The thread that examines a camera says when it enters the
/// driver, that it was back meanwhile, and when it has left it; a thread of the watch's own calls a
/// function if that takes too long. Waiting for a camera between two calls of the driver is no
/// hang, however long it takes. Any thread.
class PHangWatch {
public:
    using Milliseconds = std::chrono::milliseconds;
    /// Called on the watch's thread, once, with the time in which the driver did not return. What
    /// it does to the program must be final: a driver that returns after all is held up until it
    /// has ended, in leave() or touch(). So it may use what the entered thread uses outside of the
    /// driver.
    using Report = std::function<void(Milliseconds waited)>;

    /// Begins. `patience`: the longest time without a return.
    PHangWatch(Milliseconds patience, Report report);
    /// Ends; no report comes any more.
    ~PHangWatch();
    PHangWatch(const PHangWatch&) = delete;
    PHangWatch& operator=(const PHangWatch&) = delete;

    /// From now on the driver must return in time.
    void enter();
    /// The driver has returned, and may be called again: the time begins from zero. Does nothing
    /// unless entered.
    void touch();
    /// The driver has returned for good.
    void leave();

    /// The driver is entered while this exists.
    class Entered {
    public:
        explicit Entered(PHangWatch& watch)
            : m_watch(watch) {
            m_watch.enter();
        }
        ~Entered() { m_watch.leave(); }
        Entered(const Entered&) = delete;
        Entered& operator=(const Entered&) = delete;

    private:
        PHangWatch& m_watch;
    };

private:
    using Clock = std::chrono::steady_clock;

    void run();

    const Milliseconds m_patience;
    const Report m_report;

    // Guards the two below, which the examining thread writes and the watch's reads. Held during
    // the report, so that the examining thread does not go on beside it.
    std::mutex m_mutex;
    std::optional<Clock::time_point> m_since; ///< none: not in the driver
    bool m_isEnding = false;
    std::condition_variable m_changed;
    std::thread m_thread; ///< last: it uses the others
};
