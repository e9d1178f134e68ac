// SPDX-License-Identifier: MIT
#include <gstreamer/PcdDeviceProvider.h>

#include <gstreamer/GstFixture.h>
#include <gstreamer/camera/PGstHost.h>

namespace {

class PcdDeviceProviderTest : public GstFixture {};

std::string deviceName(GstMessage* message) {
    GstDevice* device = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_DEVICE_ADDED)
        gst_message_parse_device_added(message, &device);
    else
        gst_message_parse_device_removed(message, &device);
    const GstPtr<GstDevice> owned(device);
    GstStructure* const details = gst_device_get_properties(device);
    std::string id = gst_structure_get_string(details, "pcd.camera");
    gst_structure_free(details);
    return id;
}

} // namespace

TEST_F(PcdDeviceProviderTest, a_monitor_lists_cameras_and_follows_them) {
    ASSERT_TRUE(PGstHost::instance().prepare(u"sim"_qs, scene()).isOk());
    const GstPtr<GstDeviceMonitor> monitor(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Video/Source", nullptr);
    ASSERT_TRUE(gst_device_monitor_start(monitor.get()));
    const GstPtr<GstBus> bus(gst_device_monitor_get_bus(monitor.get()));
    const auto next = [&] {
        GstPtr<GstMessage> message;
        waitUntil([&] {
            message.reset(gst_bus_pop(bus.get()));
            return message != nullptr;
        });
        return message ? GST_MESSAGE_TYPE_NAME(message.get()) + (' ' + deviceName(message.get()))
                       : std::string();
    };
    GList* const devices = gst_device_monitor_get_devices(monitor.get());
    EXPECT_EQ(g_list_length(devices), 2U);
    g_list_free_full(devices, gst_object_unref);
    ToupcamSim_unplug("two");
    std::string message = next();
    while (message.find("device-added") == 0) // of the start
        message = next();
    EXPECT_EQ(message, "device-removed Simulated-T-T2");
    ToupcamSim_plug("two");
    EXPECT_EQ(next(), "device-added Simulated-T-T2");
    gst_device_monitor_stop(monitor.get());
}

TEST_F(PcdDeviceProviderTest, a_camera_that_does_not_report_its_sizes_has_any) {
    ASSERT_TRUE(PGstHost::instance().prepare(u"sim"_qs, scene()).isOk());
    ToupcamSim_failCall("Toupcam_get_Resolution", 0, 0, E_FAIL);
    const GstPtr<GstDeviceMonitor> monitor(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Video/Source", nullptr);
    GList* const devices = gst_device_monitor_get_devices(monitor.get());
    ASSERT_EQ(g_list_length(devices), presentCameras);
    const GstPtr<GstCaps> caps(gst_device_get_caps(GST_DEVICE(devices->data)));
    const GstPtr<GstCaps> sized(gst_caps_from_string("video/x-raw,width=64,height=48"));
    EXPECT_TRUE(gst_caps_can_intersect(caps.get(), sized.get()));
    g_list_free_full(devices, gst_object_unref);
}
