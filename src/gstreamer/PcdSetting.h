// SPDX-License-Identifier: MIT
#pragma once

#include <gstreamer/camera/PGstCatalogue.h>

#include <gst/gst.h>

/// One setting of the camera as a child of `pcdsrc`, which has the setting's id as its name: so
/// that programs can list the settings, and read and set each by itself.
struct PcdSetting {
    GstObject parent;
    PGstCatalogue::Entry* entry;
};

/// Its class.
struct PcdSettingClass {
    GstObjectClass parent;
};

/// The type, registered by the first call. Any thread.
GType pcd_setting_get_type();

/// A setting, which works while its parent is a `pcdsrc`; a floating reference. Any thread.
PcdSetting* pcd_setting_new(const PGstCatalogue::Entry& entry);
