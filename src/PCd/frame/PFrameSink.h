// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceFrame.h>

#include <PCore/PExport.h>

/// Receives every frame of a device the moment it arrives; a recorder is one. Added to a device
/// with PDevice::addFrameSink().
class PCD_EXPORT PFrameSink {
public:
    /// A frame of the stream, or one taken on request.
    enum class Kind { Live, Snapshot };

    virtual ~PFrameSink(); // defined in the library, so that all others share its type

    /// One frame, on the thread that delivers it; calls from several threads are possible. Must be
    /// fast and must never wait for the device's thread: the camera waits for this call, and
    /// stopping the camera on that thread would deadlock. Returns false, or throws, if the frame
    /// was not accepted: it is then counted as failed in a writer.
    virtual bool takeFrame(const PDeviceFrame& frame, Kind kind) = 0;
};
