// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimPicture.h>

#include <functional>

/// Delivers a stream's pictures to the client: pushed or pulled. The stream calls all but pull()
/// on its producing thread or, stopping, from the thread that stops.
class PSimDelivery {
public:
    virtual ~PSimDelivery() = default;

    /// Starts, with threads marked as those of `owner`; `wake` makes the stream check for work.
    virtual void start(const void* owner, std::function<void()> wake) = 0;
    /// Delivers a live frame; may exchange `picture` for another one with memory to reuse.
    virtual void frame(PSimPicture& picture) = 0;
    /// The same for a still.
    virtual void still(PSimPicture& picture) = 0;
    /// False if a frame delivered now would replace one that is not yet announced to the client.
    virtual bool isReady() const = 0;
    /// Reports to the client that the camera is gone, then calls `afterwards`.
    virtual void lost(std::function<void()> afterwards) = 0;
    /// Reports to the client that auto-exposure changed something.
    virtual void exposureChanged() = 0;

    /// Pushes any buffer with any header; false if this delivery does not push.
    virtual bool raw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) = 0;
    /// Reports any event, then calls `afterwards`; false if this delivery has no events.
    virtual bool event(unsigned code, std::function<void()> afterwards) = 0;
    /// Copies the newest live or still picture out; any thread. See Toupcam_PullImageV2.
    virtual HRESULT pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info) = 0;

    /// Makes its threads end after the callbacks in progress.
    virtual void requestStop() = 0;
    /// Waits until its threads have ended. Not from one of them.
    virtual void join() = 0;
};
