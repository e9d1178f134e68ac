// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

namespace {

using SimSettings = SimTest;

struct OptionRow {
    const char* name;
    const char* camera;
    unsigned option;
    int value;
    HRESULT expected;
};

const OptionRow options[] = {
    {"no frame rate limit", "sim-20mc-1", TOUPCAM_OPTION_FRAMERATE, 0, S_OK},
    {"frame rate limit", "sim-20mc-1", TOUPCAM_OPTION_FRAMERATE, 5, S_OK},
    {"negative frame rate", "sim-20mc-1", TOUPCAM_OPTION_FRAMERATE, -1, E_INVALIDARG},
    {"several threads", "sim-20mc-1", TOUPCAM_OPTION_MULTITHREAD, 1, S_OK},
    {"threads that are not a switch", "sim-20mc-1", TOUPCAM_OPTION_MULTITHREAD, 2, E_INVALIDARG},
    {"bandwidth", "sim-20mc-1", TOUPCAM_OPTION_BANDWIDTH, 95, S_OK},
    {"least bandwidth", "sim-20mc-1", TOUPCAM_OPTION_BANDWIDTH, 1, S_OK},
    {"no bandwidth at all", "sim-20mc-1", TOUPCAM_OPTION_BANDWIDTH, 0, E_INVALIDARG},
    {"more than all bandwidth", "sim-20mc-1", TOUPCAM_OPTION_BANDWIDTH, 101, E_INVALIDARG},
    {"bandwidth of a model without the option", "sim-1mm-1", TOUPCAM_OPTION_BANDWIDTH, 95,
     E_NOTIMPL},
    {"processing chosen by the SDK", "sim-20mc-1", TOUPCAM_OPTION_PROCESSMODE, 0, S_OK},
    {"processing elsewhere", "sim-20mc-1", TOUPCAM_OPTION_PROCESSMODE, 1, E_NOTIMPL},
    {"red first", "sim-20mc-1", TOUPCAM_OPTION_BYTEORDER, 0, S_OK},
    {"blue first", "sim-20mc-1", TOUPCAM_OPTION_BYTEORDER, 1, S_OK},
    {"no such byte order", "sim-20mc-1", TOUPCAM_OPTION_BYTEORDER, 2, E_INVALIDARG},
    {"video mode", "sim-20mc-1", TOUPCAM_OPTION_TRIGGER, 0, S_OK},
    {"software trigger", "sim-20mc-1", TOUPCAM_OPTION_TRIGGER, 1, S_OK},
    {"external trigger", "sim-20mc-1", TOUPCAM_OPTION_TRIGGER, 2, S_OK},
    {"software trigger of a model without", "sim-1mm-1", TOUPCAM_OPTION_TRIGGER, 1, E_NOTIMPL},
    {"external trigger of a model without one", "sim-1mm-1", TOUPCAM_OPTION_TRIGGER, 2, E_NOTIMPL},
    {"video mode of a model without triggers", "sim-1mm-1", TOUPCAM_OPTION_TRIGGER, 0, S_OK},
    {"no such trigger mode", "sim-20mc-1", TOUPCAM_OPTION_TRIGGER, 3, E_INVALIDARG},
    {"processed data", "sim-20mc-1", TOUPCAM_OPTION_RAW, 0, S_OK},
    {"raw data", "sim-20mc-1", TOUPCAM_OPTION_RAW, 1, E_NOTIMPL},
    {"no colour matrix", "sim-20mc-1", TOUPCAM_OPTION_COLORMATIX, 0, S_OK},
    {"colour matrix that is not a switch", "sim-20mc-1", TOUPCAM_OPTION_COLORMATIX, 2,
     E_INVALIDARG},
    {"colour matrix of a grey camera", "sim-1mm-1", TOUPCAM_OPTION_COLORMATIX, 1, E_NOTIMPL},
    {"no white balance gains", "sim-20mc-1", TOUPCAM_OPTION_WBGAIN, 0, S_OK},
    {"gains that are not a switch", "sim-20mc-1", TOUPCAM_OPTION_WBGAIN, -1, E_INVALIDARG},
    {"gains of a grey camera", "sim-1mm-1", TOUPCAM_OPTION_WBGAIN, 1, E_NOTIMPL},
    {"binning that adds", "sim-20mc-1", TOUPCAM_OPTION_BINNING, 4, S_OK},
    {"binning that averages", "sim-20mc-1", TOUPCAM_OPTION_BINNING, 0x82, S_OK},
    {"binning by nothing", "sim-20mc-1", TOUPCAM_OPTION_BINNING, 0, E_INVALIDARG},
    {"binning by too much", "sim-20mc-1", TOUPCAM_OPTION_BINNING, 5, E_INVALIDARG},
    {"average of one pixel", "sim-20mc-1", TOUPCAM_OPTION_BINNING, 0x81, E_INVALIDARG},
    {"average of too many", "sim-20mc-1", TOUPCAM_OPTION_BINNING, 0x85, E_INVALIDARG},
    {"binning of a grey camera", "sim-1mm-1", TOUPCAM_OPTION_BINNING, 3, S_OK},
    {"rotation", "sim-20mc-1", TOUPCAM_OPTION_ROTATE, 270, S_OK},
    {"rotation by an eighth", "sim-20mc-1", TOUPCAM_OPTION_ROTATE, 45, E_INVALIDARG},
    {"rotation by more than a turn", "sim-20mc-1", TOUPCAM_OPTION_ROTATE, 360, E_INVALIDARG},
    {"rotation backwards", "sim-20mc-1", TOUPCAM_OPTION_ROTATE, -90, E_INVALIDARG},
    {"no such option", "sim-20mc-1", 9999, 1, E_NOTIMPL},
};

class SimOption : public SimTest, public WithSimRow<OptionRow> {};

ROWS_IN(rows, SimOption, options);

ROW_TEST(SimOption, is_accepted_and_read_back_or_refused_and_kept) {
    const HToupcam handle = open(GetParam().camera);
    int before = -99;
    const HRESULT readable = Toupcam_get_Option(handle, GetParam().option, &before);
    EXPECT_EQ(Toupcam_put_Option(handle, GetParam().option, GetParam().value), GetParam().expected);
    int after = -99;
    EXPECT_EQ(Toupcam_get_Option(handle, GetParam().option, &after), readable);
    EXPECT_EQ(after, GetParam().expected == S_OK ? GetParam().value : before);
}

TEST_F(SimSettings, resolutions_are_listed_with_their_sizes) {
    const HToupcam handle = open("sim-20mc-1");
    ASSERT_EQ(Toupcam_get_ResolutionNumber(handle), 3);
    int width = 0;
    int height = 0;
    EXPECT_EQ(Toupcam_get_Resolution(handle, 1, &width, &height), S_OK);
    EXPECT_EQ(width, 2736);
    EXPECT_EQ(height, 1824);
    EXPECT_EQ(Toupcam_get_Resolution(handle, 3, &width, &height), E_INVALIDARG);
    EXPECT_EQ(Toupcam_get_Resolution(handle, 0, nullptr, &height), E_POINTER);
}

TEST_F(SimSettings, chosen_resolution_is_the_final_size) {
    const HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(Toupcam_put_eSize(handle, 2), S_OK);
    int width = 0;
    int height = 0;
    EXPECT_EQ(Toupcam_get_FinalSize(handle, &width, &height), S_OK);
    EXPECT_EQ(width, 1824);
    EXPECT_EQ(height, 1216);
}

TEST_F(SimSettings, refused_resolution_leaves_the_current_one) {
    const HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(Toupcam_put_eSize(handle, 1), S_OK);
    EXPECT_EQ(Toupcam_put_eSize(handle, 3), E_INVALIDARG);
    unsigned index = 99;
    EXPECT_EQ(Toupcam_get_eSize(handle, &index), S_OK);
    EXPECT_EQ(index, 1U);
    EXPECT_EQ(Toupcam_get_eSize(handle, nullptr), E_POINTER);
}

TEST_F(SimSettings, speed_goes_from_0_to_the_maximum) {
    const HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(Toupcam_get_MaxSpeed(handle), 3);
    unsigned short level = 99;
    EXPECT_EQ(Toupcam_get_Speed(handle, &level), S_OK);
    EXPECT_EQ(level, 1);
    EXPECT_EQ(Toupcam_put_Speed(handle, 3), S_OK);
    EXPECT_EQ(Toupcam_put_Speed(handle, 4), E_INVALIDARG);
    EXPECT_EQ(Toupcam_get_Speed(handle, &level), S_OK);
    EXPECT_EQ(level, 3);
}

TEST_F(SimSettings, exposure_time_stays_in_its_range) {
    const HToupcam handle = open("sim-20mc-1");
    unsigned minimum = 0;
    unsigned maximum = 0;
    unsigned initial = 0;
    EXPECT_EQ(Toupcam_get_ExpTimeRange(handle, &minimum, &maximum, &initial), S_OK);
    EXPECT_EQ(minimum, 50U);
    EXPECT_EQ(maximum, 15000000U);
    EXPECT_EQ(initial, 10000U);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, maximum), S_OK);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, maximum + 1), E_INVALIDARG);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, minimum - 1), E_INVALIDARG);
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), S_OK);
    EXPECT_EQ(time, maximum);
}

TEST_F(SimSettings, gain_stays_in_its_range) {
    const HToupcam handle = open("sim-20mc-1");
    unsigned short minimum = 0;
    unsigned short maximum = 0;
    unsigned short initial = 0;
    EXPECT_EQ(Toupcam_get_ExpoAGainRange(handle, &minimum, &maximum, &initial), S_OK);
    EXPECT_EQ(minimum, 100);
    EXPECT_EQ(maximum, 500);
    EXPECT_EQ(Toupcam_put_ExpoAGain(handle, 250), S_OK);
    EXPECT_EQ(Toupcam_put_ExpoAGain(handle, 99), E_INVALIDARG);
    EXPECT_EQ(Toupcam_put_ExpoAGain(handle, 501), E_INVALIDARG);
    unsigned short gain = 0;
    EXPECT_EQ(Toupcam_get_ExpoAGain(handle, &gain), S_OK);
    EXPECT_EQ(gain, 250);
}

TEST_F(SimSettings, auto_exposure_switch_and_target_are_kept) {
    const HToupcam handle = open("sim-20mc-1");
    int automatic = -1;
    EXPECT_EQ(Toupcam_get_AutoExpoEnable(handle, &automatic), S_OK);
    EXPECT_EQ(automatic, 1);
    EXPECT_EQ(Toupcam_put_AutoExpoEnable(handle, 0), S_OK);
    EXPECT_EQ(Toupcam_get_AutoExpoEnable(handle, &automatic), S_OK);
    EXPECT_EQ(automatic, 0);
    unsigned short target = 0;
    EXPECT_EQ(Toupcam_put_AutoExpoTarget(handle, 77), S_OK);
    EXPECT_EQ(Toupcam_put_AutoExpoTarget(handle, 9), E_INVALIDARG);
    EXPECT_EQ(Toupcam_put_AutoExpoTarget(handle, 236), E_INVALIDARG);
    EXPECT_EQ(Toupcam_get_AutoExpoTarget(handle, &target), S_OK);
    EXPECT_EQ(target, 77);
}

TEST_F(SimSettings, real_time_mode_is_0_1_or_2) {
    const HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(Toupcam_put_RealTime(handle, 1), S_OK);
    EXPECT_EQ(Toupcam_put_RealTime(handle, 3), E_INVALIDARG);
}

TEST_F(SimSettings, fan_maximum_is_the_models) {
    EXPECT_EQ(Toupcam_get_FanMaxSpeed(open("sim-20mc-1")), 3);
    EXPECT_EQ(Toupcam_get_FanMaxSpeed(open("sim-1mm-1")), 0);
}

/// A setting that slows a camera down, relative to a reference camera with default settings.
struct RateRow {
    const char* name;
    double share; ///< of the reference's frame rate
    void (*set)(HToupcam);
};

const RateRow rates[] = {
    {"highest speed level is the full rate", 1.0, [](HToupcam) {}},
    {"second of four speed levels is half the rate", 0.5,
     [](HToupcam h) { Toupcam_put_Speed(h, 1); }},
    {"lowest of four speed levels is a quarter", 0.25, [](HToupcam h) { Toupcam_put_Speed(h, 0); }},
    {"frame rate limit is kept", 0.2,
     [](HToupcam h) { Toupcam_put_Option(h, TOUPCAM_OPTION_FRAMERATE, 100); }},
    {"frame takes at least its exposure time", 0.1,
     [](HToupcam h) { Toupcam_put_ExpoTime(h, 20000); }},
    {"quarter of the link's bandwidth limits the rate", 0.25,
     [](HToupcam h) { Toupcam_put_Option(h, TOUPCAM_OPTION_BANDWIDTH, 25); }},
    {"smaller frames do not fill the link", 1.0,
     [](HToupcam h) {
         Toupcam_put_Option(h, TOUPCAM_OPTION_BANDWIDTH, 25);
         Toupcam_put_eSize(h, 1);
     }},
};

class SimRate : public SimTest, public WithSimRow<RateRow> {};

ROWS_IN(rows, SimRate, rates);

// Two cameras run side by side: their frame counts are compared with each other, not with a clock.
ROW_TEST(SimRate, follows_what_limits_it) {
    SimCameraText camera;
    camera.fps = 500;
    // 96 x 64 bytes, 500 times a second, exactly fill a link of 3.072 million bytes a second.
    camera.extra = R"(, "flags": ["BANDWIDTH"], "speedLevels": 4, "linkMegabytes": 3.072,
                       "exposure": {"default": 100})";
    SimCameraText reference = camera;
    reference.id = "reference";
    load(makeScene({camera, reference}));
    FrameLog log(0);
    for (const std::string id : {"cam", "reference"}) {
        const HToupcam handle = open(id);
        Toupcam_put_Speed(handle, 3);
        ToupcamSim_holdFrames(id.c_str(), 1); // only the counting is of interest
        if (id == "cam")
            GetParam().set(handle);
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    }
    const FrameCounts cam = readCounts("cam");
    const FrameCounts ref = readCounts("reference");
    ASSERT_TRUE(eventually([&] { return readCounts("reference").produced >= ref.produced + 300; }));
    const double share = double(readCounts("cam").produced - cam.produced) /
                         double(readCounts("reference").produced - ref.produced);
    EXPECT_NEAR(share, GetParam().share, 0.12 * GetParam().share + 0.01);
}

} // namespace
