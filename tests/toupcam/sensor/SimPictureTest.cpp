// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace {

class SimPicture : public SimPictureTest {
protected:
    Transfer transfer(HToupcam handle, unsigned microseconds, unsigned short gain) {
        EXPECT_EQ(Toupcam_put_ExpoTime(handle, microseconds), S_OK);
        EXPECT_EQ(Toupcam_put_ExpoAGain(handle, gain), S_OK);
        const auto frames = take(handle, 2);
        return measureTransfer(frames[0], frames[1]);
    }
};

TEST_F(SimPicture, brightness_is_offset_plus_electrons_times_gain) {
    const HToupcam handle = openOnly(flatCamera());
    for (const unsigned microseconds : {1000U, 4000U, 12000U}) {
        for (const unsigned short gain : {std::uint16_t{100}, std::uint16_t{150}}) {
            const double electrons = electronsPerMs * microseconds / 1000.0;
            const double expected = offset + electrons * gain / 100.0 / electronsPerCount;
            EXPECT_NEAR(transfer(handle, microseconds, gain).mean, expected, 0.1)
                << microseconds << " us, " << gain << " %";
        }
    }
}

TEST_F(SimPicture, too_much_light_is_white_and_no_light_is_the_offset) {
    const HToupcam handle = openOnly(flatCamera());
    EXPECT_NEAR(transfer(handle, 100000, 100).mean, 255.0, 0.001);
    EXPECT_NEAR(transfer(handle, 10, 100).mean, offset + 0.1, 0.1);
}

TEST_F(SimPicture, full_pixel_holds_no_more_than_its_full_well) {
    SimCameraText camera = flatCamera();
    camera.extra = R"(, "sensor": {"fullWell": 1000, "electronsPerCount": 10, "offset": 8,
                                   "readNoise": 0, "electronsPerMs": 100},
                      "exposure": {"auto": false})";
    const HToupcam handle = openOnly(camera);
    EXPECT_NEAR(transfer(handle, 20000, 100).mean, 108.0, 0.1); // 8 + 1000 / 10
}

// The photon-transfer curve: variance over mean is a line whose slope is gain / electronsPerCount
// and whose height at the offset is the read noise (and the rounding to whole counts: 1/12).
struct TransferRow {
    const char* name;
    unsigned short gain;
};

class SimTransfer : public SimPicture, public WithSimRow<TransferRow> {};

ROWS(gains, SimTransfer, TransferRow{"gain 100 per cent", 100},
     TransferRow{"gain 200 per cent", 200}, TransferRow{"gain 50 per cent", 50});

ROW_TEST(SimTransfer, curve_measured_from_pairs_of_frames_is_the_one_computed) {
    const HToupcam handle = openOnly(flatCamera(R"(, "gain": {"min": 50, "max": 400})"));
    const double countsAnElectron = GetParam().gain / 100.0 / electronsPerCount;
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    double highest = 0;
    constexpr int points = 8;
    for (int i = 1; i <= points; ++i) {
        // Up to 200 counts: the noise must not be cut off at white.
        const double counts = 200.0 * i / points;
        const double ms = counts / countsAnElectron / electronsPerMs;
        const Transfer point =
            transfer(handle, unsigned(std::lround(1000.0 * ms)), GetParam().gain);
        const double x = point.mean - offset;
        sumX += x;
        sumY += point.variance;
        sumXX += x * x;
        sumXY += x * point.variance;
        highest = std::max(highest, point.variance);
    }
    const double spread = sumXX - sumX * sumX / points;
    const double slope = (sumXY - sumX * sumY / points) / spread;
    const double height = (sumY - slope * sumX) / points;
    // The relative standard error of a variance from n pairs is sqrt(2 / n), here at most that of
    // the highest point; slope and intercept of the fitted line inherit it. Five of them are
    // allowed.
    const double error = 5.0 * std::sqrt(2.0 / picturePixels) * highest;
    const double centre = sumX / points;
    EXPECT_NEAR(slope, countsAnElectron, error / std::sqrt(spread));
    const double read = readNoise * countsAnElectron;
    EXPECT_NEAR(height, read * read + 1.0 / 12.0,
                error * std::sqrt(1.0 / points + centre * centre / spread));
}

TEST_F(SimPicture, noise_of_two_frames_is_not_the_same) {
    const HToupcam handle = openOnly(flatCamera());
    const auto frames = take(handle, 2);
    EXPECT_NE(frames[0].bytes, frames[1].bytes);
}

TEST_F(SimPicture, same_scene_gives_the_same_pictures) {
    const auto frameNumber0 = [this] {
        SimCameraText camera;
        camera.fps = 1; // the first frame has number 0 even on a busy machine
        camera.source = R"({"kind": "specimen"})";
        camera.extra = R"(, "exposure": {"auto": false})";
        const HToupcam handle = openOnly(camera);
        Toupcam_put_ExpoTime(handle, 10000);
        EventLog events;
        EXPECT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
        EXPECT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
        std::vector<std::uint8_t> pixels(96 * 64 * 3);
        ToupcamFrameInfoV2 info{};
        EXPECT_EQ(Toupcam_PullImageV2(handle, pixels.data(), 24, &info), S_OK);
        EXPECT_EQ(info.seq, 0U);
        Toupcam_Close(handle);
        return pixels;
    };
    EXPECT_EQ(frameNumber0(), frameNumber0());
}

TEST_F(SimPicture, tissue_has_bright_background_pink_and_blue_stains) {
    SimCameraText camera;
    camera.width = 680;
    camera.height = 456;
    camera.source = R"({"kind": "specimen", "specimen": "tissue"})";
    camera.extra = R"(, "exposure": {"auto": false})";
    const PushedFrame frame = take(openOnly(camera), 1).front();
    int background = 0;
    int pink = 0;
    int nuclei = 0;
    for (int y = 0; y < 456; ++y) {
        for (int x = 0; x < 680; ++x) {
            const int red = frame.at(x, y, 0);
            const int green = frame.at(x, y, 1);
            const int blue = frame.at(x, y, 2);
            background += green > 200 ? 1 : 0;
            pink += red > 150 && green < 160 && red > blue ? 1 : 0;
            nuclei += red < 110 && blue > red ? 1 : 0;
        }
    }
    const int all = 680 * 456;
    EXPECT_GT(background, all / 20);
    EXPECT_GT(pink, all / 5);
    EXPECT_GT(nuclei, all / 50);
}

TEST_F(SimPicture, fluorescence_is_bright_on_a_dark_background) {
    SimCameraText camera;
    camera.width = 640;
    camera.height = 480;
    camera.bits = 8;
    camera.source = R"({"kind": "specimen", "specimen": "fluorescence"})";
    camera.extra = R"(, "exposure": {"auto": false})";
    PushedFrame frame = take(openOnly(camera), 1).front();
    std::sort(frame.bytes.begin(), frame.bytes.end());
    EXPECT_LT(frame.bytes[frame.bytes.size() / 5], 20);
    EXPECT_GT(frame.bytes[frame.bytes.size() * 99 / 100], 100);
}

/// Auto-exposure from a picture that is much too dark or too bright, and the result it must reach.
struct AutoRow {
    const char* name;
    double level;
    unsigned start; ///< microseconds
    unsigned short target;
};

class SimAutoExposure : public SimPicture, public WithSimRow<AutoRow> {};

ROWS(rows, SimAutoExposure, AutoRow{"far too dark", 1.0, 100, 120},
     AutoRow{"far too bright", 1.0, 200000, 120}, AutoRow{"low target", 0.5, 20000, 40},
     AutoRow{"high target", 0.5, 20000, 200});

ROW_TEST(SimAutoExposure, converges_to_its_target_within_25_frames) {
    SimCameraText camera = flatCamera();
    camera.source = R"({"kind": "flat", "level": )" + std::to_string(GetParam().level) + "}";
    const HToupcam handle = openOnly(camera);
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, GetParam().start), S_OK);
    ASSERT_EQ(Toupcam_put_AutoExpoTarget(handle, GetParam().target), S_OK);
    ASSERT_EQ(Toupcam_put_AutoExpoEnable(handle, 1), S_OK);
    const auto frames = take(handle, 26);
    EXPECT_GT(std::abs(measureMean(frames.front()) - GetParam().target), 20.0);
    EXPECT_NEAR(measureMean(frames[25]), GetParam().target, 0.03 * GetParam().target);
}

TEST_F(SimPicture, auto_exposure_raises_the_gain_when_time_is_not_enough) {
    SimCameraText camera = flatCamera();
    camera.extra = R"(, "sensor": {"electronsPerMs": 100, "electronsPerCount": 10},
                      "exposure": {"auto": true, "autoMax": 5000, "default": 1000, "target": 120})";
    const HToupcam handle = openOnly(camera);
    take(handle, 25);
    unsigned time = 0;
    unsigned short gain = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), S_OK);
    EXPECT_EQ(Toupcam_get_ExpoAGain(handle, &gain), S_OK);
    EXPECT_EQ(time, 5000U);
    EXPECT_NEAR(gain, 236, 12); // (120 - 2) counts x 10 electrons / 500 electrons
}

TEST_F(SimPicture, auto_exposure_reports_each_change_and_nothing_once_it_has_settled) {
    const HToupcam handle = openOnly(flatCamera());
    CallCounter calls;
    ASSERT_EQ(Toupcam_put_ExpoCallback(handle, CallCounter::onCall, &calls), S_OK);
    ASSERT_EQ(Toupcam_put_AutoExpoEnable(handle, 1), S_OK);
    take(handle, 30);
    const unsigned changes = calls.count();
    EXPECT_GE(changes, 3U);
    EXPECT_LE(changes, 25U);
    take(handle, 10);
    EXPECT_EQ(calls.count(), changes);
}

TEST_F(SimPicture, exposure_callback_can_be_removed) {
    const HToupcam handle = openOnly(flatCamera());
    CallCounter calls;
    ASSERT_EQ(Toupcam_put_ExpoCallback(handle, CallCounter::onCall, &calls), S_OK);
    ASSERT_EQ(Toupcam_put_ExpoCallback(handle, nullptr, nullptr), S_OK);
    ASSERT_EQ(Toupcam_put_AutoExpoEnable(handle, 1), S_OK);
    take(handle, 5);
    EXPECT_EQ(calls.count(), 0U);
}

TEST_F(SimPicture, manual_exposure_stays_as_it_was_set) {
    const HToupcam handle = openOnly(flatCamera());
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 100), S_OK);
    take(handle, 5);
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), S_OK);
    EXPECT_EQ(time, 100U);
}

TEST_F(SimPicture, picture_file_of_the_user_lies_under_the_lens) {
    const PictureFolder folder;
    const std::string file = folder.add("colour.ppm", '\xff', '\x40', '\0');
    const PushedFrame frame = take(openOnly(pictureCamera(file)), 1).front();
    EXPECT_NEAR(frame.at(48, 32, 0), 200, 4);
    EXPECT_NEAR(frame.at(48, 32, 1), 50, 4);
    EXPECT_NEAR(frame.at(48, 32, 2), 0, 1);
}

TEST_F(SimPicture, pictures_of_a_folder_are_shown_one_after_the_other) {
    const PictureFolder folder;
    folder.add("a.ppm", '\xff', '\0', '\0');
    folder.add("b.ppm", '\0', '\0', '\xff');
    std::ofstream(folder.path() + "/notes.txt") << "not a picture";
    const HToupcam handle = openOnly(pictureCamera(folder.path()));
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    bool red = false;
    bool blue = false;
    ASSERT_TRUE(eventually([&] {
        for (const PushedFrame& frame : log.frames()) {
            red = red || frame.at(48, 32, 0) > 150;
            blue = blue || frame.at(48, 32, 2) > 150;
        }
        return red && blue;
    }));
    Toupcam_Close(handle);
}

TEST_F(SimPicture, picture_that_vanishes_later_is_black) {
    std::string file;
    {
        const PictureFolder folder;
        file = folder.add("gone.ppm", '\xff', '\xff', '\xff');
        load(makeScene({pictureCamera(file)}));
    }
    const PushedFrame frame = take(open(), 1).front();
    EXPECT_EQ(*std::max_element(frame.bytes.begin(), frame.bytes.end()), 0);
}

TEST_F(SimPicture, specimen_has_its_colours_in_either_byte_order) {
    const PictureFolder folder;
    const HToupcam handle = openOnly(pictureCamera(folder.add("colour.ppm", '\xff', '\0', '\0')));
    EXPECT_NEAR(take(handle, 1).front().at(48, 32, 0), 200, 4);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BYTEORDER, 1), S_OK);
    const PushedFrame frame = take(handle, 1).front();
    EXPECT_EQ(frame.at(48, 32, 0), 0);
    EXPECT_NEAR(frame.at(48, 32, 2), 200, 4);
}

} // namespace
