// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimHotPlug.h>

#include <toupcam/sim/hook/PSimHook.h>

#include <condition_variable>
#include <thread>
#include <utility>

struct PSimHotPlug::Loop {
    PTOUPCAM_HOTPLUG callback = nullptr;
    void* context = nullptr;
    std::mutex mutex; // guards the two below
    unsigned pending = 0;
    bool stopping = false;
    std::condition_variable wake;
    std::thread thread;

    void run() {
        // Without the lock: the callback may plug, unplug, notify or unregister.
        while (waitForEvent()) {
            PSimHook::beforeCallback("hotplug");
            callback(context);
        }
    }

    // False if the thread must end.
    bool waitForEvent() {
        std::unique_lock lock(mutex);
        wake.wait(lock, [this] { return stopping || pending > 0; });
        if (stopping)
            return false;
        --pending;
        return true;
    }

    void post() {
        const std::lock_guard lock(mutex);
        ++pending;
        wake.notify_one();
    }

    void stop() {
        {
            const std::lock_guard lock(mutex);
            stopping = true;
            wake.notify_one();
        }
        // From inside the callback a join would wait for itself: the thread ends after it instead.
        if (thread.get_id() == std::this_thread::get_id())
            thread.detach();
        else
            thread.join();
    }
};

std::shared_ptr<PSimHotPlug::Loop> PSimHotPlug::exchange(std::shared_ptr<Loop> next) {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_loop, std::move(next));
}

void PSimHotPlug::setCallback(PTOUPCAM_HOTPLUG callback, void* context) {
    if (const std::shared_ptr<Loop> previous = exchange(nullptr))
        previous->stop();
    if (!callback)
        return;
    auto loop = std::make_shared<Loop>();
    loop->callback = callback;
    loop->context = context;
    // The thread keeps its loop alive, as it may outlive the registration.
    loop->thread = std::thread([loop] { loop->run(); });
    if (const std::shared_ptr<Loop> rival = exchange(loop))
        rival->stop();
}

void PSimHotPlug::notify() {
    const std::lock_guard lock(m_mutex);
    if (m_loop)
        m_loop->post();
}
