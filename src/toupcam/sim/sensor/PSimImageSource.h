// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimPicture.h>
#include <toupcam/sim/frame/PSimShot.h>
#include <toupcam/sim/scene/PSimScene.h>

#include <cstdint>
#include <memory>

/// The source of a camera's pictures: what is under the lens, and how it is imaged. Thread-safe; a
/// camera's producing thread calls prepare() and take().
class PSimImageSource {
public:
    virtual ~PSimImageSource() = default;

    /// Called when a stream begins, while its first frame is exposed: makes what frames of this
    /// kind need, as far as it can be made in advance.
    virtual void prepare(const PSimShot& /*shot*/) {}
    /// Takes picture number `frame` at the time in `picture`: fills its size, format, means and
    /// pixels, reusing its memory.
    virtual void take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) = 0;
    /// Whether exposure and gain change the pictures.
    virtual bool isExposed() const = 0;
    /// Whether pictures come as fast as the client takes them instead of at the camera's rate.
    virtual bool isUnpaced() const { return false; }

    /// The source that the scene gives this camera; `seed` chooses its noise.
    static std::shared_ptr<PSimImageSource> create(std::shared_ptr<const PSimCameraSpec> spec,
                                                   std::uint64_t seed);
};
