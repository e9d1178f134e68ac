// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>
#include <toupcam/sim/world/PSimSession.h>
#include <toupcam/toupcam.h>

#include <memory>
#include <mutex>

/// One camera of the scene, plugged in or not, opened or not. Callable from any thread.
class PSimCamera {
public:
    PSimCamera(const PSimCameraSpec& spec, std::uint64_t seed,
               std::shared_ptr<PSimFrameObserver> observer);

    const PSimCameraSpec& spec() const { return *m_spec; }
    /// Its record in the enumeration. The model record stays valid for the rest of the process:
    /// clients keep the pointer, as the maker's library allows.
    ToupcamDeviceV2 record() const;

    /// Whether it is plugged in.
    bool isPlugged() const;
    /// Opens it; null if it is unplugged or open already.
    std::shared_ptr<PSimSession> open();
    /// Its session has been closed.
    void closed(const std::shared_ptr<PSimSession>& session);

    /// Unplugs it; false if it is not plugged in. `afterwards` is called when an open session's
    /// stream has reported the loss, or at once if there is no stream.
    bool unplug(const std::function<void()>& afterwards);
    /// Plugs it in; false if it is plugged in already.
    bool plug();

    /// While held, frames are produced but never arrive.
    void hold(bool held);
    /// See PSimStream; false without an open session.
    bool pushRaw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot);
    bool fireEvent(unsigned code);
    /// A signal at the external trigger input; see PSimStream.
    bool signal();
    std::uint64_t missedSignals() const;
    /// Of the newest stream, running or not.
    PSimFrameCounts counts() const;

private:
    std::shared_ptr<PSimSession> session() const;

    std::shared_ptr<const PSimCameraSpec> m_spec;
    std::shared_ptr<PSimCameraLink> m_link;
    const ToupcamModelV2* m_model;
    mutable std::mutex m_mutex; // guards all below
    bool m_plugged;
    std::shared_ptr<PSimSession> m_session; ///< the open one; an unplugged one until it is closed
    PSimFrameCounts m_lastCounts;
};
