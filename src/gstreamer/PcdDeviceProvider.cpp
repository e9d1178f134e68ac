// SPDX-License-Identifier: MIT
#include <gstreamer/PcdDeviceProvider.h>

#include <gstreamer/PGstDeviceList.h>

G_DEFINE_TYPE(PcdDeviceProvider, pcd_device_provider, GST_TYPE_DEVICE_PROVIDER)

namespace {

PGstDeviceList& toList(gpointer object) {
    return *static_cast<PcdDeviceProvider*>(object)->list;
}

GList* probe(GstDeviceProvider* provider) {
    return toList(provider).probe();
}

gboolean startProvider(GstDeviceProvider* provider) {
    return toList(provider).start() ? TRUE : FALSE;
}

void stopProvider(GstDeviceProvider* provider) {
    toList(provider).stop();
}

void finalizeProvider(GObject* object) {
    delete static_cast<PcdDeviceProvider*>(static_cast<gpointer>(object))->list;
    G_OBJECT_CLASS(pcd_device_provider_parent_class)->finalize(object);
}

} // namespace

static void pcd_device_provider_class_init(PcdDeviceProviderClass* type) {
    G_OBJECT_CLASS(type)->finalize = finalizeProvider;
    GstDeviceProviderClass* const provider = GST_DEVICE_PROVIDER_CLASS(type);
    provider->probe = probe;
    provider->start = startProvider;
    provider->stop = stopProvider;
    gst_device_provider_class_set_static_metadata(provider, "Cameras with PCd device plugins",
                                                  "Source/Video",
                                                  "Lists cameras, as they are plugged in and "
                                                  "unplugged",
                                                  "The PTDevice developers");
}

static void pcd_device_provider_init(PcdDeviceProvider* provider) {
    provider->list = new PGstDeviceList(&provider->parent);
}
