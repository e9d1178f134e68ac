// SPDX-License-Identifier: MIT
#pragma once

class PDevice;
class QVariant;
struct PDeviceSettings;

/// Whether a camera's frames are triggered or live.
class PCaptureMode {
public:
    /// The property that holds it.
    static constexpr const char* propertyId = "extexposure";

    /// True in triggered capture, false for a live stream: the field "capturemode" of that
    /// property, 1 or 0. A device without it has live streams only. Reads the host's copy, not the
    /// camera. The device's thread.
    static bool isTriggered(const PDevice& device);
    /// The same field of this value of that property. Any thread.
    static bool isTriggered(const QVariant& value);
    /// The host's copy at the time of these settings, which are a frame's. Any thread.
    static bool isTriggered(const PDeviceSettings& settings);
    /// True where triggers, if it waits for them, are signals at the camera's input: the field
    /// "triggermode" is 1.
    static bool isTriggeredFromOutside(const PDevice& device);
};
