// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/sensor/PSimImageSource.h>
#include <toupcam/sim/settings/PSimThermal.h>
#include <toupcam/sim/stream/PSimFrameObserver.h>

#include <atomic>
#include <cstdint>
#include <memory>

/// Data that a stream and its camera share beyond one session. The pointers are set once, before
/// the first session; everything else may be read and changed on any thread.
struct PSimCameraLink {
    std::shared_ptr<PSimImageSource> source;
    std::shared_ptr<PSimFrameObserver> observer;
    std::atomic<bool> held{false};       ///< frames are produced but never arrive
    std::atomic<std::uint64_t> taken{0}; ///< for the observer
    std::atomic<std::uint64_t> triggered{0};
    PSimExternalTriggerSpec externalTrigger;
    std::shared_ptr<PSimThermal> thermal;
};
