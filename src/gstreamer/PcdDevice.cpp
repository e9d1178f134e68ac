// SPDX-License-Identifier: MIT
#include <gstreamer/PcdDevice.h>

#include <gstreamer/PcdSrc.h>

G_DEFINE_TYPE(PcdDevice, pcd_device, GST_TYPE_DEVICE)

namespace {

PcdDevice* toDevice(gpointer object) {
    return static_cast<PcdDevice*>(object);
}

GstElement* createElement(GstDevice* device, const gchar* name) {
    GstElement* const element = GST_ELEMENT(
        g_object_new(pcd_src_get_type(), "name", name, "camera", toDevice(device)->id, nullptr));
    return element;
}

/// Only an element of this kind, and only while it is closed.
gboolean reconfigureElement(GstDevice* device, GstElement* element) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(element, pcd_src_get_type()) == FALSE)
        return FALSE;
    GST_OBJECT_LOCK(element); // both states are of the same moment
    const bool isClosed = GST_STATE(element) == GST_STATE_NULL &&
                          GST_STATE_PENDING(element) == GST_STATE_VOID_PENDING;
    GST_OBJECT_UNLOCK(element);
    if (!isClosed)
        return FALSE;
    g_object_set(element, "camera", toDevice(device)->id, nullptr);
    return TRUE;
}

void finalizeDevice(GObject* object) {
    g_free(toDevice(object)->id);
    G_OBJECT_CLASS(pcd_device_parent_class)->finalize(object);
}

} // namespace

static void pcd_device_class_init(PcdDeviceClass* type) {
    G_OBJECT_CLASS(type)->finalize = finalizeDevice;
    GST_DEVICE_CLASS(type)->create_element = createElement;
    GST_DEVICE_CLASS(type)->reconfigure_element = reconfigureElement;
}

static void pcd_device_init(PcdDevice*) {
}

GstDevice* pcd_device_new(const char* id, const char* name, GstCaps* caps, GstStructure* details) {
    auto* const device = static_cast<PcdDevice*>(
        g_object_new(pcd_device_get_type(), "display-name", name, "device-class", "Video/Source",
                     "caps", caps, "properties", details, nullptr));
    device->id = g_strdup(id);
    gst_structure_free(details);
    return GST_DEVICE(device);
}
