// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Observes every frame a camera takes, on the camera's producing thread; `taken` counts those of
/// one camera, from 1, over all its streams, without those that fell due while the client was busy.
class PSimFrameObserver {
public:
    virtual ~PSimFrameObserver() = default;
    /// Called before a frame is delivered; if it returns false, the frame is lost in the camera.
    /// `triggered` counts triggered frames in the same way; 0 for any other.
    virtual bool frameTaken(std::uint64_t taken, std::uint64_t triggered) = 0;
    /// Called after it has been delivered or lost.
    virtual void frameDone(std::uint64_t taken) = 0;
};
