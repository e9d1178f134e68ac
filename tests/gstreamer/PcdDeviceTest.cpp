// SPDX-License-Identifier: MIT
#include <gstreamer/PcdDevice.h>

#include <gstreamer/GstFixture.h>

namespace {

class PcdDeviceTest : public GstFixture {
protected:
    const GstPtr<GstCaps> caps{gst_caps_from_string("video/x-raw,width=64")};
    const GstPtr<GstDevice> device{GST_DEVICE(gst_object_ref_sink(pcd_device_new(
        "Model-7", "Model", caps.get(),
        gst_structure_new("pcd-properties", "pcd.serial", G_TYPE_STRING, "7", nullptr))))};

    static std::string camera(GstElement* element) {
        char* text = nullptr;
        g_object_get(element, "camera", &text, nullptr);
        std::string result = text;
        g_free(text);
        return result;
    }
};

} // namespace

TEST_F(PcdDeviceTest, its_element_uses_its_camera) {
    GstElement* const made = gst_device_create_element(device.get(), "eye");
    const GstPtr<GstElement> element(GST_ELEMENT(gst_object_ref_sink(made)));
    EXPECT_EQ(camera(element.get()), "Model-7");
    EXPECT_TRUE(gst_device_has_classes(device.get(), "Video/Source"));
}

TEST_F(PcdDeviceTest, an_element_is_given_another_camera) {
    const GstPtr<GstElement> element(
        GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("pcdsrc", nullptr))));
    EXPECT_TRUE(gst_device_reconfigure_element(device.get(), element.get()));
    EXPECT_EQ(camera(element.get()), "Model-7");
    const GstPtr<GstElement> other(
        GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("fakesink", nullptr))));
    EXPECT_FALSE(gst_device_reconfigure_element(device.get(), other.get()));
}

TEST_F(PcdDeviceTest, an_element_that_is_open_keeps_its_camera) {
    GstRun run(pipeline("camera=0"));
    run.setState(GST_STATE_READY);
    EXPECT_FALSE(gst_device_reconfigure_element(device.get(), run.source()));
    EXPECT_EQ(camera(run.source()), "0");
    run.setState(GST_STATE_NULL);
    EXPECT_TRUE(gst_device_reconfigure_element(device.get(), run.source()));
    EXPECT_EQ(camera(run.source()), "Model-7");
}
