// SPDX-License-Identifier: MIT
#pragma once

#include <gst/gst.h>

/// A camera in GStreamer's list of devices. Made by the device provider.
struct PcdDevice {
    GstDevice parent;
    char* id; ///< for the element's property "camera"
};

/// Its class.
struct PcdDeviceClass {
    GstDeviceClass parent;
};

/// The type, registered by the first call. Any thread.
GType pcd_device_get_type();

/// A device with this id; the name is shown to the user, and the caps and details are described by
/// GstDevice. Takes the details. A floating reference. Any thread.
GstDevice* pcd_device_new(const char* id, const char* name, GstCaps* caps, GstStructure* details);
