// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstHost.h>

#include <gstreamer/GstFixture.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

class PGstHostTest : public GstFixture {
protected:
    PGstHost& host = PGstHost::instance();

    std::string reason(const QString& sdk, const QString& scene) {
        return host.prepare(sdk, scene).reason().toStdString();
    }
};

} // namespace

TEST_F(PGstHostTest, all_users_of_a_process_have_the_sdk_and_scene_of_the_first) {
    const QString file = scene();
    ASSERT_EQ(reason(u"sim"_qs, file), "");
    EXPECT_EQ(reason({}, {}), "");
    EXPECT_EQ(reason(u"sim"_qs, file), "");
    EXPECT_THAT(reason(u"/usr/lib/other.so"_qs, {}), HasSubstr("already uses sdk=\"sim\""));
    EXPECT_THAT(reason({}, u"other.json"_qs), HasSubstr("already uses scene"));
    EXPECT_EQ(host.manager().devices().size(), 2);
}

TEST_F(PGstHostTest, after_a_failure_it_can_be_prepared_again) {
    EXPECT_THAT(reason(u"/nowhere/sdk.so"_qs, {}), HasSubstr("/nowhere/sdk.so"));
    EXPECT_THAT(reason(u"sim"_qs, u"/nowhere/scene.json"_qs), HasSubstr("/nowhere/scene.json"));
    EXPECT_FALSE(host.isPrepared());
    EXPECT_EQ(reason(u"sim"_qs, scene()), "");
}

TEST_F(PGstHostTest, the_environment_chooses_the_sdk_of_those_who_do_not) {
    qputenv("PCD_GST_SDK", "/nowhere/env.so");
    EXPECT_THAT(reason({}, {}), HasSubstr("/nowhere/env.so"));
    qunsetenv("PCD_GST_SDK");
}

TEST_F(PGstHostTest, a_camera_has_one_user) {
    ASSERT_EQ(reason(u"sim"_qs, scene()), "");
    PDevice* const device = host.manager().devices().first();
    EXPECT_TRUE(host.claim(device));
    EXPECT_FALSE(host.claim(device));
    host.release(device);
    EXPECT_TRUE(host.claim(device));
    EXPECT_TRUE(host.identify(*device).simulated);
}
