// SPDX-License-Identifier: MIT
#include <gstreamer/PGstDeviceList.h>

#include <gstreamer/GstFixture.h>
#include <gstreamer/PcdDeviceProvider.h>
#include <gstreamer/camera/PGstHost.h>

namespace {

class PGstDeviceListTest : public GstFixture {
protected:
    const GstPtr<GstDeviceProvider> provider{
        gst_device_provider_factory_get_by_name("pcddeviceprovider")};
    PGstDeviceList& list = *reinterpret_cast<PcdDeviceProvider*>(provider.get())->list;
};

} // namespace

TEST_F(PGstDeviceListTest, a_probe_has_the_cameras_with_caps_and_details) {
    ASSERT_TRUE(PGstHost::instance().prepare(u"sim"_qs, scene()).isOk());
    GList* const devices = list.probe();
    ASSERT_EQ(g_list_length(devices), 2U);
    auto* const device = static_cast<GstDevice*>(devices->data);
    const GstPtr<GstCaps> caps(gst_device_get_caps(device));
    EXPECT_EQ(gst_caps_get_size(caps.get()), 2U);
    GstStructure* const details = gst_device_get_properties(device);
    EXPECT_STREQ(gst_structure_get_string(details, "pcd.serial"), "T1");
    gboolean isSimulated = FALSE;
    EXPECT_TRUE(gst_structure_get_boolean(details, "pcd.simulated", &isSimulated));
    EXPECT_TRUE(isSimulated);
    gst_structure_free(details);
    g_list_free_full(devices, gst_object_unref);
}

TEST_F(PGstDeviceListTest, without_an_sdk_there_are_no_devices) {
    qputenv("PCD_GST_SDK", "/nowhere/sdk.so");
    EXPECT_EQ(list.probe(), nullptr);
    EXPECT_FALSE(list.start());
    qunsetenv("PCD_GST_SDK");
}
