// SPDX-License-Identifier: MIT
#pragma once

class PDevice;
class PDeviceProperty;
class QVariant;
struct PDeviceSettings;

/// Whether a camera's frames are triggered or live.
class PCaptureMode {
public:
    /// The property with the role PRole::Triggered. Null if there is none: such a camera has live
    /// streams only. The device's thread.
    static PDeviceProperty* property(const PDevice& device);
    /// True in triggered capture, false for a live stream. Reads the cached value, not the camera.
    /// The device's thread.
    static bool isTriggered(const PDevice& device);
    /// The same for this value of the property. The device's thread.
    static bool isTriggered(const PDeviceProperty& property, const QVariant& value);
    /// The same for the settings of a frame. Any thread.
    static bool isTriggered(const PDeviceSettings& settings);
    /// True if triggers are signals at the camera's input. The device's thread.
    static bool isTriggeredFromOutside(const PDevice& device);
};
