// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Set = void (*)(HToupcam);

double limited(double value) {
    return std::clamp(value, 0.0, 255.0);
}

/// The result of a tone setting for a value, computed here without the simulator's tables.
struct ToneRow {
    const char* name;
    Set set;
    double (*expected)(double);
};

const ToneRow tones[] = {
    {"neutral", [](HToupcam) {}, [](double v) { return v; }},
    {"gamma 50 darkens", [](HToupcam h) { Toupcam_put_Gamma(h, 50); },
     [](double v) { return v * v / 255; }},
    {"gamma 180 lightens", [](HToupcam h) { Toupcam_put_Gamma(h, 180); },
     [](double v) { return 255 * std::pow(v / 255, 1 / 1.8); }},
    {"brightness adds counts", [](HToupcam h) { Toupcam_put_Brightness(h, 64); },
     [](double v) { return limited(v + 64); }},
    {"darkness takes counts away", [](HToupcam h) { Toupcam_put_Brightness(h, -64); },
     [](double v) { return limited(v - 64); }},
    {"contrast 50 doubles the distance from the middle",
     [](HToupcam h) { Toupcam_put_Contrast(h, 50); },
     [](double v) { return limited(127.5 + 2 * (v - 127.5)); }},
    {"contrast minus 100 leaves a quarter of it", [](HToupcam h) { Toupcam_put_Contrast(h, -100); },
     [](double v) { return 127.5 + (v - 127.5) / 4; }},
    {"negative", [](HToupcam h) { Toupcam_put_Negative(h, 1); }, [](double v) { return 255 - v; }},
    {"gamma comes before contrast and negative last",
     [](HToupcam h) {
         Toupcam_put_Negative(h, 1);
         Toupcam_put_Contrast(h, 50);
         Toupcam_put_Gamma(h, 50);
     },
     [](double v) { return 255 - limited(127.5 + 2 * (v * v / 255 - 127.5)); }},
};

class SimToneTest : public SimPictureTest, public WithSimRow<ToneRow> {};

ROWS_IN(rows, SimToneTest, tones);

ROW_TEST(SimToneTest, changes_each_grey_value_as_computed) {
    SimCameraText camera;
    camera.bits = 8;
    const HToupcam handle = openOnly(camera);
    GetParam().set(handle);
    const PushedFrame frame = takeOne(handle);
    EXPECT_NEAR(frame.at(0, 0, 0), GetParam().expected(0), 0.501);
    EXPECT_NEAR(frame.at(16, 32, 0), GetParam().expected(87), 0.501);
    EXPECT_NEAR(frame.at(48, 32, 0), GetParam().expected(127), 0.501);
    EXPECT_NEAR(frame.at(80, 32, 0), GetParam().expected(39), 0.501);
}

ROW_TEST(SimToneTest, changes_each_channel_of_a_colour_picture_as_computed) {
    const PictureFolder folder;
    const HToupcam handle =
        openOnly(pictureCamera(folder.add("colour.ppm", '\xff', '\x80', '\x40')));
    const PushedFrame before = takeOne(handle);
    GetParam().set(handle);
    const PushedFrame after = takeOne(handle);
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_NEAR(channelMean(after, channel), GetParam().expected(channelMean(before, channel)),
                    1.0);
}

/// Brightness and the two colour differences of a picture, by ITU-R BT.601.
struct Colour {
    double luma;
    double blueness;
    double redness;

    double strength() const { return std::hypot(blueness, redness); }
    double degrees() const { return std::atan2(redness, blueness) * 180 / 3.14159265358979; }
};

Colour meanColour(const PushedFrame& frame) {
    const double red = channelMean(frame, 0);
    const double green = channelMean(frame, 1);
    const double blue = channelMean(frame, 2);
    const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
    return {luma, (blue - luma) / 1.772, (red - luma) / 1.402};
}

class SimColourTest : public SimPictureTest {
protected:
    /// A picture of 157, 118 and 94 counts: no setting below makes a channel black or white.
    HToupcam openReddish() {
        return openOnly(pictureCamera(m_folder.add("colour.ppm", '\xc8', '\x96', '\x78')));
    }
    Colour colour(HToupcam handle) { return meanColour(takeOne(handle)); }

    PictureFolder m_folder;
};

TEST_F(SimColourTest, hue_rotates_the_colour_by_its_degrees) {
    const HToupcam handle = openReddish();
    const Colour before = colour(handle);
    for (const int degrees : {-180, -90, -30, 30, 90, 180}) {
        ASSERT_EQ(Toupcam_put_Hue(handle, degrees), S_OK);
        const Colour after = colour(handle);
        const double turned = std::remainder(after.degrees() - before.degrees() - degrees, 360.0);
        EXPECT_NEAR(turned, 0.0, 1.5) << degrees;
        EXPECT_NEAR(after.strength(), before.strength(), 1.0) << degrees;
        EXPECT_NEAR(after.luma, before.luma, 1.0) << degrees;
    }
}

TEST_F(SimColourTest, hue_moves_red_towards_green_and_green_towards_blue) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(Toupcam_put_Hue(handle, 120), S_OK);
    const PushedFrame frame = takeOne(handle);
    EXPECT_GT(frame.at(16, 32, 1), frame.at(16, 32, 0) + 50);
    EXPECT_GT(frame.at(16, 32, 1), frame.at(16, 32, 2) + 50);
    EXPECT_GT(frame.at(48, 32, 2), frame.at(48, 32, 0) + 50);
    EXPECT_GT(frame.at(48, 32, 2), frame.at(48, 32, 1) + 50);
}

TEST_F(SimColourTest, saturation_stretches_the_colour_and_keeps_the_brightness) {
    const HToupcam handle = openReddish();
    const Colour before = colour(handle);
    for (const int saturation : {0, 64, 200, 255}) {
        ASSERT_EQ(Toupcam_put_Saturation(handle, saturation), S_OK);
        const Colour after = colour(handle);
        EXPECT_NEAR(after.strength(), before.strength() * saturation / 128, 1.0) << saturation;
        EXPECT_NEAR(after.luma, before.luma, 1.0) << saturation;
    }
}

TEST_F(SimColourTest, chrome_makes_a_grey_picture_of_three_equal_channels) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(Toupcam_put_Chrome(handle, 1), S_OK);
    const PushedFrame frame = takeOne(handle);
    EXPECT_EQ(frame.header.biBitCount, 24);
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_NEAR(frame.at(16, 32, channel), 0.299 * 255, 1.0);
        EXPECT_NEAR(frame.at(48, 32, channel), 0.587 * 255, 1.0);
        EXPECT_NEAR(frame.at(80, 32, channel), 0.114 * 255, 1.0);
        EXPECT_EQ(frame.at(0, 0, channel), 0);
    }
}

TEST_F(SimColourTest, without_the_colour_matrix_colours_are_paler) {
    const HToupcam handle = openReddish();
    const Colour before = colour(handle);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_COLORMATIX, 0), S_OK);
    const Colour after = colour(handle);
    EXPECT_LT(after.strength(), 0.6 * before.strength());
    EXPECT_GT(after.strength(), 0.2 * before.strength());
    EXPECT_NEAR(after.luma, before.luma, 8.0);
}

TEST_F(SimColourTest, without_the_colour_matrix_grey_stays_grey) {
    const HToupcam handle =
        openOnly(pictureCamera(m_folder.add("grey.ppm", '\x80', '\x80', '\x80')));
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_COLORMATIX, 0), S_OK);
    EXPECT_NEAR(colour(handle).strength(), 0.0, 0.5);
}

/// Colour settings whose effect must not depend on the order of the bytes.
struct OrderRow {
    const char* name;
    Set set;
};

const OrderRow orders[] = {
    {"as it is", [](HToupcam) {}},
    {"hue", [](HToupcam h) { Toupcam_put_Hue(h, 60); }},
    {"white balance", [](HToupcam h) { Toupcam_put_TempTint(h, 4500, 900); }},
    {"raw colours", [](HToupcam h) { Toupcam_put_Option(h, TOUPCAM_OPTION_COLORMATIX, 0); }},
};

class SimColourOrder : public SimColourTest, public WithSimRow<OrderRow> {};

ROWS_IN(rows, SimColourOrder, orders);

ROW_TEST(SimColourOrder, colours_are_the_same_in_either_byte_order) {
    const HToupcam handle = openReddish();
    GetParam().set(handle);
    const PushedFrame redFirst = takeOne(handle);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BYTEORDER, 1), S_OK);
    const PushedFrame blueFirst = takeOne(handle);
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_NEAR(channelMean(blueFirst, 2 - channel), channelMean(redFirst, channel), 0.5);
}

TEST_F(SimColourTest, settings_apply_to_the_next_frames_of_a_running_stream) {
    const HToupcam handle = openOnly({});
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    ASSERT_EQ(Toupcam_put_Negative(handle, 1), S_OK);
    ASSERT_TRUE(eventually([&log] { return log.last().at(0, 0, 0) == 255; }));
    ASSERT_EQ(Toupcam_put_Negative(handle, 0), S_OK);
    ASSERT_TRUE(eventually([&log] { return log.last().at(0, 0, 0) == 0; }));
    Toupcam_Stop(handle);
}

TEST_F(SimColourTest, auto_exposure_uses_the_picture_before_its_tones_are_changed) {
    const HToupcam handle = openOnly(flatCamera());
    ASSERT_EQ(Toupcam_put_AutoExpoEnable(handle, 1), S_OK);
    ASSERT_EQ(Toupcam_put_AutoExpoTarget(handle, 100), S_OK);
    ASSERT_EQ(Toupcam_put_Negative(handle, 1), S_OK);
    EXPECT_NEAR(measureMean(take(handle, 26).back()), 155.0, 3.0);
}

} // namespace
