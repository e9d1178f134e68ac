// SPDX-License-Identifier: MIT
#pragma once

class PDevice;
class PDeviceProperty;
class QVariant;
struct PDeviceSettings;

/// Whether a camera's frames are triggered or live.
class PCaptureMode {
public:
    /// The property that holds it: the one with the role PRole::Triggered. Null where there is
    /// none: such a camera has live streams only. The device's thread.
    static PDeviceProperty* property(const PDevice& device);
    /// True in triggered capture, false for a live stream. Reads the host's copy, not the camera.
    /// The device's thread.
    static bool isTriggered(const PDevice& device);
    /// Likewise, with this value of that property. The device's thread.
    static bool isTriggered(const PDeviceProperty& property, const QVariant& value);
    /// The host's copy at the time of these settings, which are a frame's. Any thread.
    static bool isTriggered(const PDeviceSettings& settings);
    /// True where triggers, if it waits for them, are signals at the camera's input. The device's
    /// thread.
    static bool isTriggeredFromOutside(const PDevice& device);
};
