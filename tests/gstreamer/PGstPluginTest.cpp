// SPDX-License-Identifier: MIT
#include <gstreamer/PGstPlugin.h>

#include <gstreamer/GstFixture.h>

namespace {

class PGstPluginTest : public GstFixture {};

} // namespace

TEST_F(PGstPluginTest, registers_the_element_and_the_device_provider) {
    const GstPtr<GstElementFactory> element(gst_element_factory_find("pcdsrc"));
    ASSERT_NE(element, nullptr);
    EXPECT_TRUE(gst_element_factory_list_is_type(
        element.get(), GST_ELEMENT_FACTORY_TYPE_SRC | GST_ELEMENT_FACTORY_TYPE_MEDIA_VIDEO));
    const GstPtr<GstDeviceProviderFactory> provider(
        gst_device_provider_factory_find("pcddeviceprovider"));
    ASSERT_NE(provider, nullptr);
    EXPECT_TRUE(gst_device_provider_factory_has_classes(provider.get(), "Video/Source"));
}
