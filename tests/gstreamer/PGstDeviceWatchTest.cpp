// SPDX-License-Identifier: MIT
#include <gstreamer/PGstDeviceWatch.h>

#include <gstreamer/GstFixture.h>
#include <gstreamer/camera/PGstHost.h>

namespace {

class PGstDeviceWatchTest : public GstFixture {
protected:
    const GstPtr<GstDeviceProvider> provider{
        gst_device_provider_factory_get_by_name("pcddeviceprovider")};

    guint listed() const { return g_list_length(provider->devices); }
};

} // namespace

TEST_F(PGstDeviceWatchTest, the_list_follows_the_cameras_until_it_is_stopped) {
    ASSERT_TRUE(PGstHost::instance().prepare(u"sim"_qs, scene()).isOk());
    PGstDeviceWatch watch(provider.get());
    ASSERT_TRUE(watch.start());
    EXPECT_EQ(listed(), 2U);
    ToupcamSim_unplug("one");
    EXPECT_TRUE(waitUntil([&] { return listed() == 1; }));
    watch.stop();
    ToupcamSim_plug("one");
    ASSERT_TRUE(waitUntil([&] { return PGstHost::instance().manager().devices().size() == 2; }));
    EXPECT_EQ(listed(), 1U);
}
