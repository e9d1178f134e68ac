// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <memory>
#include <mutex>

/// The hot-plug thread of the process: it exists while a callback is registered. Callable from any
/// thread, the callback itself included.
class PSimHotPlug {
public:
    /// Registers the callback, or with null unregisters it. Returns when a callback of the earlier
    /// registration in progress has returned, unless called from inside it.
    void setCallback(PTOUPCAM_HOTPLUG callback, void* context);

    /// Has the callback run once on the hot-plug thread; without a callback nothing happens.
    void notify();

private:
    struct Loop;

    std::shared_ptr<Loop> exchange(std::shared_ptr<Loop> next);

    std::mutex m_mutex; // guards m_loop
    std::shared_ptr<Loop> m_loop;
};
