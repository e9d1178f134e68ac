// SPDX-License-Identifier: MIT
#pragma once

class PDevice;
struct PFrameStamp;

/// How a camera comes to its frames.
class PCaptureMode {
public:
    /// The property that says so.
    static constexpr const char* propertyId = "extexposure";

    /// True where triggers make the frames, false for a live stream: the field "capturemode" of
    /// that property, 1 or 0. A device without it has live streams only. The device's thread; the
    /// camera is not asked.
    static bool isTriggered(const PDevice& device);
    /// The same when this frame arrived. Any thread.
    static bool isTriggered(const PFrameStamp& stamp);
    /// True where triggers, if it waits for them, are signals at the camera's input: the field
    /// "triggermode" is 1.
    static bool isTriggeredFromOutside(const PDevice& device);
};
