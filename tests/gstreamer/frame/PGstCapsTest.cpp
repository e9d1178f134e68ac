// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstCaps.h>

#include <gstreamer/GstFixture.h>

namespace {

class PGstCapsTest : public GstFixture {
protected:
    const PDeviceMode large{64, 48, u"64x48"_qs, "0", 8};
    const PDeviceMode small{33, 24, u"33x24"_qs, "1", 8};

    static std::string text(GstCaps* caps) {
        const GstPtr<GstCaps> owned(caps);
        return PGstCaps::toText(caps).toStdString();
    }

    PDeviceMode choose(const char* caps, const PDeviceMode& preferred) const {
        const GstPtr<GstCaps> taken(gst_caps_from_string(caps));
        return PGstCaps::choose(taken.get(), {large, small}, preferred);
    }
};

} // namespace

TEST_F(PGstCapsTest, frames_have_their_format_and_size) {
    const auto name = [](PDIP::ColorFormat format) {
        return text(PGstCaps::fromHeader(PImageHeader(33, 24, format)));
    };
    EXPECT_EQ(name(PDIP::ColorFormat::Gray).substr(0, 70),
              "video/x-raw, format=(string)GRAY8, width=(int)33, height=(int)24, inte");
    EXPECT_NE(name(PDIP::ColorFormat::Bgr).find("format=(string)BGR,"), std::string::npos);
    EXPECT_NE(name(PDIP::ColorFormat::Xrgb).find("format=(string)RGBx,"), std::string::npos);
    EXPECT_NE(name(PDIP::ColorFormat::BgrX).find("format=(string)BGRx,"), std::string::npos);
    EXPECT_NE(name(PDIP::ColorFormat::Bgr).find("framerate=(fraction)0/1"), std::string::npos);
    EXPECT_EQ(PGstCaps::fromHeader(PImageHeader()), nullptr);
}

TEST_F(PGstCapsTest, caps_of_frames_are_among_those_of_the_modes) {
    const GstPtr<GstCaps> modes(PGstCaps::fromModes({large, small}));
    EXPECT_EQ(gst_caps_get_size(modes.get()), 2U);
    const GstPtr<GstCaps> frame(
        PGstCaps::fromHeader(PImageHeader(33, 24, PDIP::ColorFormat::Gray)));
    const GstPtr<GstCaps> other(
        PGstCaps::fromHeader(PImageHeader(34, 24, PDIP::ColorFormat::Gray)));
    EXPECT_TRUE(gst_caps_can_intersect(frame.get(), modes.get()));
    EXPECT_FALSE(gst_caps_can_intersect(other.get(), modes.get()));
    const GstPtr<GstCaps> any(PGstCaps::makeTemplate());
    EXPECT_TRUE(gst_caps_is_subset(modes.get(), any.get()));
    EXPECT_EQ(text(PGstCaps::fromModes({})), text(PGstCaps::makeTemplate()));
}

TEST_F(PGstCapsTest, the_preferred_mode_is_chosen_if_it_is_allowed) {
    EXPECT_EQ(choose("ANY", small), small);
    EXPECT_EQ(choose("video/x-raw,width=64", small), large);
    EXPECT_EQ(choose("video/x-raw,height=[1,30]", large), small);
    EXPECT_EQ(choose("video/x-raw,width=65", large), PDeviceMode());
    EXPECT_EQ(choose("audio/x-raw", large), PDeviceMode());
}
