// SPDX-License-Identifier: MIT
#include <gstreamer/PcdSetting.h>

#include <gstreamer/GstFixture.h>

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

class PcdSettingTest : public GstFixture {
protected:
    static std::string text(GstElement* source, const char* property) {
        char* text = nullptr;
        gst_child_proxy_get(GST_CHILD_PROXY(source), property, &text, nullptr);
        std::string result = text != nullptr ? text : "none";
        g_free(text);
        return result;
    }
};

} // namespace

TEST_F(PcdSettingTest, the_settings_of_an_open_camera_are_children_with_their_ranges) {
    GstRun run(pipeline());
    GstChildProxy* const proxy = GST_CHILD_PROXY(run.source());
    EXPECT_EQ(gst_child_proxy_get_children_count(proxy), 0U);
    run.setState(GST_STATE_READY);
    EXPECT_GT(gst_child_proxy_get_children_count(proxy), 10U);
    EXPECT_EQ(text(run.source(), "contrast::value"), "0");
    EXPECT_EQ(text(run.source(), "contrast::title"), "Contrast");
    EXPECT_THAT(text(run.source(), "contrast::expected"), HasSubstr("-100 to 100"));
    EXPECT_EQ(text(run.source(), "autoexpottime::unit"), "µs");
    run.setState(GST_STATE_NULL);
    EXPECT_EQ(gst_child_proxy_get_children_count(proxy), 0U);
}

TEST_F(PcdSettingTest, a_value_is_set_and_read_back_from_the_camera) {
    GstRun run(pipeline());
    run.setState(GST_STATE_PLAYING);
    gst_child_proxy_set(GST_CHILD_PROXY(run.source()), "contrast::value", "-30", nullptr);
    EXPECT_TRUE(waitUntil([&] { return text(run.source(), "contrast::value") == "-30"; }));
    gst_child_proxy_set(GST_CHILD_PROXY(run.source()), "contrast::value", "900", nullptr);
    EXPECT_NE(run.message(GST_MESSAGE_WARNING), nullptr);
    EXPECT_EQ(text(run.source(), "contrast::value"), "-30");
}

TEST_F(PcdSettingTest, a_setting_outlives_its_element) {
    GstPtr<GstObject> setting;
    {
        GstRun run(pipeline());
        run.setState(GST_STATE_READY);
        setting.reset(GST_OBJECT(
            gst_child_proxy_get_child_by_name(GST_CHILD_PROXY(run.source()), "contrast")));
    }
    g_object_set(setting.get(), "value", "5", nullptr);
    char* value = nullptr;
    g_object_get(setting.get(), "value", &value, nullptr);
    EXPECT_STREQ(value, "0"); // the last one that was known
    g_free(value);
}
