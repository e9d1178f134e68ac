// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

/// Callbacks of the client, wrapped so that each run of one is recorded. Any thread.
namespace PTraceCallbacks {

/// A function and a context to register instead of the client's own. They exist until the program
/// ends, because an SDK may call late.
template <typename Function>
struct Registration {
    Function function;
    void* context;
};

/// Wraps the client's callback; null stays null, and without memory the client's own is returned,
/// whose runs are then missing from the trace. The handle is that of the camera.
Registration<PTOUPCAM_HOTPLUG> wrap(PTOUPCAM_HOTPLUG callback, void* context) noexcept;
Registration<PTOUPCAM_DATA_CALLBACK> wrap(HToupcam handle, PTOUPCAM_DATA_CALLBACK callback,
                                          void* context) noexcept;
Registration<PTOUPCAM_EVENT_CALLBACK> wrap(HToupcam handle, PTOUPCAM_EVENT_CALLBACK callback,
                                           void* context) noexcept;
Registration<PITOUPCAM_EXPOSURE_CALLBACK>
wrap(HToupcam handle, PITOUPCAM_EXPOSURE_CALLBACK callback, void* context) noexcept;
Registration<PITOUPCAM_TEMPTINT_CALLBACK>
wrap(HToupcam handle, PITOUPCAM_TEMPTINT_CALLBACK callback, void* context) noexcept;

} // namespace PTraceCallbacks
