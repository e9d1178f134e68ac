// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceFrame.h>

/// Takes every frame of a device the moment it arrives (a recorder). Tie it to a device with
/// PDevice::addFrameSink().
class PFrameSink {
public:
    /// Of the stream, or taken on request.
    enum class Kind { Live, Snapshot };

    virtual ~PFrameSink() = default;

    /// One frame, on the thread that delivers it; calls from several threads are possible. Must be
    /// quick, and must never wait for the device's thread: the camera waits meanwhile, and a stop
    /// on that thread waits for the camera. Returns false, or throws, if the frame could not be
    /// taken: it is then counted as failed in a writer.
    virtual bool takeFrame(const PDeviceFrame& frame, Kind kind) = 0;
};
