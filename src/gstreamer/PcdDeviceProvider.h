// SPDX-License-Identifier: MIT
#pragma once

#include <gst/gst.h>

class PGstDeviceList;

/// What GObject needs of the list of cameras in GStreamer. PGstDeviceList does the work.
struct PcdDeviceProvider {
    GstDeviceProvider parent;
    PGstDeviceList* list;
};

/// Its class.
struct PcdDeviceProviderClass {
    GstDeviceProviderClass parent;
};

/// The type, registered by the first call. Any thread.
GType pcd_device_provider_get_type();
