// SPDX-License-Identifier: MIT
#pragma once

#include <gst/base/gstpushsrc.h>

class PGstSource;

/// The element `pcdsrc`: what GObject needs of it. PGstSource does the work.
struct PcdSrc {
    GstPushSrc parent;
    PGstSource* source;
    GList* children; ///< PcdSetting each, while a camera is open; guarded by the object's lock
};

/// Its class.
struct PcdSrcClass {
    GstPushSrcClass parent;
};

/// The type, registered by the first call. Any thread.
GType pcd_src_get_type();
