// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <memory>
#include <mutex>

/// The hot-plug thread of the process: it exists while a callback is registered. Callable from any
/// thread, the callback itself included.
class PSimHotPlug {
public:
    /// Registers the callback, or with null unregisters it. Returns when a callback in progress of
    /// the earlier registration has returned, unless called from inside it.
    void setCallback(PTOUPCAM_HOTPLUG callback, void* context);

    /// Makes the callback run once on the hot-plug thread; does nothing without a callback.
    void notify();

private:
    struct Loop;

    std::shared_ptr<Loop> exchange(std::shared_ptr<Loop> next);

    std::mutex m_mutex; // guards m_loop
    std::shared_ptr<Loop> m_loop;
};
