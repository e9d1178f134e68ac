// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/replay/PReplayFrames.h>
#include <toupcam/trace/replay/PReplayRecording.h>

#include <functional>
#include <map>

/// The callbacks that the client has registered. One thread at a time.
class PReplayClient {
public:
    /// A callback with its context.
    template <typename Function>
    struct Registration {
        Function function = nullptr;
        void* context = nullptr;
    };
    /// Those for one camera.
    struct Camera {
        Registration<PTOUPCAM_DATA_CALLBACK> data;
        Registration<PTOUPCAM_EVENT_CALLBACK> event;
        Registration<PITOUPCAM_EXPOSURE_CALLBACK> exposure;
        Registration<PITOUPCAM_TEMPTINT_CALLBACK> tempTint;
        ToupcamFrameInfoV2 announced{}; ///< what the last pull without a buffer reported
    };

    Registration<PTOUPCAM_HOTPLUG> hotPlug;
    std::map<int, Camera> cameras; ///< by the number of the handle

    /// What runs a recorded callback, without further use of this object; empty if the client has
    /// registered none for it.
    std::function<void()> prepare(const PReplayCallback& callback, PReplayFrames& frames) const;
};
