// SPDX-License-Identifier: MIT
#pragma once

class PDevice;

/// How a camera comes to its frames. The device's thread; the camera is not asked.
class PCaptureMode {
public:
    /// The property that says so.
    static constexpr const char* propertyId = "extexposure";

    /// True where triggers make the frames, false for a live stream: the field "capturemode" of
    /// that property, 1 or 0. A device without it has live streams only.
    static bool isTriggered(const PDevice& device);
    /// True where triggers, if it waits for them, are signals at the camera's input: the field
    /// "triggermode" is 1.
    static bool isTriggeredFromOutside(const PDevice& device);
};
