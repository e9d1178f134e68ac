// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

/// Calls a function at short intervals on a thread of its own.
class MutantStream {
public:
    ~MutantStream() { stop(); }

    void start(const std::function<void()>& tick) {
        m_runs = true;
        m_thread = std::thread([this, tick] {
            while (m_runs) {
                std::this_thread::sleep_for(std::chrono::milliseconds(4));
                if (m_runs)
                    tick();
            }
        });
    }
    void stop() {
        m_runs = false;
        if (m_thread.joinable())
            m_thread.join();
    }
    bool isRunning() const { return m_runs; }

private:
    std::atomic<bool> m_runs = false;
    std::thread m_thread;
};
