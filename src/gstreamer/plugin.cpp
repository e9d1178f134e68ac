// SPDX-License-Identifier: MIT
// The plugin's entry. It runs in every program that looks for plugins, and in GStreamer's scanner:
// it registers types, and touches neither Qt nor a camera.
#include <gstreamer/PGstPlugin.h>

#define PACKAGE "pcd"

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, pcd, "Cameras with PCd device plugins",
                  PGstPlugin::registerFeatures, PCD_VERSION, "MIT/X11", "pcd",
                  "https://gstreamer.freedesktop.org/")
