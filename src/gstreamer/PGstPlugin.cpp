// SPDX-License-Identifier: MIT
#include <gstreamer/PGstPlugin.h>

#include <gstreamer/PcdDeviceProvider.h>
#include <gstreamer/PcdSrc.h>

gboolean PGstPlugin::registerFeatures(GstPlugin* plugin) {
    const gboolean hasElement =
        gst_element_register(plugin, "pcdsrc", GST_RANK_NONE, pcd_src_get_type());
    const gboolean hasProvider = gst_device_provider_register(
        plugin, "pcddeviceprovider", GST_RANK_PRIMARY, pcd_device_provider_get_type());
    return hasElement != FALSE && hasProvider != FALSE ? TRUE : FALSE;
}
