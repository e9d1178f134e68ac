// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimEventThread.h>

#include <toupcam/sim/hook/PSimHook.h>
#include <toupcam/sim/stream/PSimThreadMark.h>

#include <algorithm>
#include <utility>

PSimEventThread::PSimEventThread(PTOUPCAM_EVENT_CALLBACK callback, void* context)
    : m_callback(callback)
    , m_context(context) {
}

PSimEventThread::~PSimEventThread() {
    // Not joined if it was closed from its own callback: the thread is at its last statement.
    if (m_thread.joinable())
        m_thread.detach();
}

void PSimEventThread::start(const void* owner) {
    // The thread keeps its object alive: closed from inside its callback, it ends by itself.
    m_thread = std::thread([self = shared_from_this(), owner] {
        const PSimThreadMark mark(owner);
        self->run();
    });
}

void PSimEventThread::post(unsigned code, std::function<void()> afterwards) {
    enqueue({code, std::move(afterwards)}, false);
}

void PSimEventThread::postOnce(unsigned code, std::function<void()> afterwards) {
    enqueue({code, std::move(afterwards)}, true);
}

void PSimEventThread::enqueue(Event event, bool once) {
    {
        const std::lock_guard lock(m_mutex);
        if (once && holds(event.code))
            return;
        if (!m_stopping) {
            m_events.push_back(std::move(event));
            m_wake.notify_one();
            return;
        }
    }
    if (event.afterwards)
        event.afterwards();
}

bool PSimEventThread::holds(unsigned code) const {
    return std::any_of(m_events.begin(), m_events.end(),
                       [code](const Event& event) { return event.code == code; });
}

bool PSimEventThread::isWaiting(unsigned code) const {
    const std::lock_guard lock(m_mutex);
    return holds(code);
}

void PSimEventThread::requestStop() {
    const std::lock_guard lock(m_mutex);
    m_stopping = true;
    m_wake.notify_one();
}

void PSimEventThread::join() {
    m_thread.join();
}

void PSimEventThread::run() {
    // Without the lock: the callback pulls pictures and may call any other function of the SDK.
    while (const std::optional<Task> task = next()) {
        if (task->isReported) {
            PSimHook::beforeCallback("event");
            m_callback(task->event.code, m_context);
        }
        if (task->event.afterwards)
            task->event.afterwards();
    }
}

// Waits for the next event and returns it; none if the thread must end. After a request to stop,
// events are not reported.
std::optional<PSimEventThread::Task> PSimEventThread::next() {
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_stopping || !m_events.empty(); });
    if (m_events.empty())
        return std::nullopt;
    Task task{std::move(m_events.front()), !m_stopping};
    m_events.pop_front();
    return task;
}
