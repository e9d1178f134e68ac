// SPDX-License-Identifier: MIT
#pragma once

class PDevice;
class QVariant;
struct PFrameStamp;

/// Whether a camera's frames are triggered or live.
class PCaptureMode {
public:
    /// The property that says so.
    static constexpr const char* propertyId = "extexposure";

    /// True in triggered capture, false for a live stream: the field "capturemode" of that
    /// property, 1 or 0. A device without it has live streams only. Reads the host's copy, not the
    /// camera. The device's thread.
    static bool isTriggered(const PDevice& device);
    /// What that property's value says. Any thread.
    static bool isTriggered(const QVariant& value);
    /// The host's copy at the time this frame arrived. Any thread.
    static bool isTriggered(const PFrameStamp& stamp);
    /// True where triggers, if it waits for them, are signals at the camera's input: the field
    /// "triggermode" is 1.
    static bool isTriggeredFromOutside(const PDevice& device);
};
