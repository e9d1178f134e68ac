// SPDX-License-Identifier: MIT
#pragma once

#include <gst/gst.h>

/// The features of the plugin.
namespace PGstPlugin {

/// Registers the element and the device provider, and does nothing else. Any thread.
gboolean registerFeatures(GstPlugin* plugin);

} // namespace PGstPlugin
