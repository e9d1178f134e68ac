// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

/// The event thread of a camera in pull mode: calls the client's event callback, one code after the
/// other. Callable from any thread.
class PSimEventThread : public std::enable_shared_from_this<PSimEventThread> {
public:
    PSimEventThread(PTOUPCAM_EVENT_CALLBACK callback, void* context);
    ~PSimEventThread();
    PSimEventThread(const PSimEventThread&) = delete;
    PSimEventThread& operator=(const PSimEventThread&) = delete;

    /// Starts the thread, marked as one of `owner`.
    void start(const void* owner);

    /// Queues a code; `afterwards` runs on the event thread when the callback has returned, or when
    /// the thread ends before it.
    void post(unsigned code, std::function<void()> afterwards = {});
    /// Queues a code unless the same one is waiting: a slow client gets no backlog of pictures.
    void postOnce(unsigned code, std::function<void()> afterwards = {});
    /// Whether this code waits to be reported.
    bool isWaiting(unsigned code) const;

    /// Makes the thread end after the callback in progress.
    void requestStop();
    /// Waits for the end; not from the event thread itself.
    void join();

private:
    struct Event {
        unsigned code;
        std::function<void()> afterwards;
    };

    struct Task {
        Event event;
        bool isReported = true; ///< the client's callback is called
    };

    void run();
    std::optional<Task> next();
    bool holds(unsigned code) const;
    void enqueue(Event event, bool once);

    PTOUPCAM_EVENT_CALLBACK m_callback;
    void* m_context;
    mutable std::mutex m_mutex; // guards m_events and m_stopping
    std::condition_variable m_wake;
    std::deque<Event> m_events;
    bool m_stopping = false;
    std::thread m_thread;
};
