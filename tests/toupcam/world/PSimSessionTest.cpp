// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <cstring>
#include <memory>

namespace {

using SimSession = SimTest;

std::vector<ToupcamDeviceV2> enumerated() {
    std::vector<ToupcamDeviceV2> records(TOUPCAM_MAX);
    records.resize(Toupcam_EnumV2(records.data()));
    return records;
}

TEST_F(SimSession, built_in_scene_has_a_colour_and_a_monochrome_camera) {
    const auto records = enumerated();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_STREQ(records[0].model->name, "Simulated-20MC");
    EXPECT_STREQ(records[0].displayname, "Simulated 20 MP colour camera");
    EXPECT_EQ(records[0].model->flag, TOUPCAM_FLAG_USB30 | TOUPCAM_FLAG_TEC_ONOFF |
                                          TOUPCAM_FLAG_FAN | TOUPCAM_FLAG_TRIGGER_SOFTWARE |
                                          TOUPCAM_FLAG_TRIGGER_EXTERNAL | TOUPCAM_FLAG_BANDWIDTH);
    EXPECT_EQ(records[0].model->preview, 3U);
    EXPECT_EQ(records[0].model->res[0].width, 5440U);
    EXPECT_EQ(records[0].model->res[2].height, 1216U);
    EXPECT_EQ(records[0].model->maxfanspeed, 3U);
    EXPECT_STREQ(records[1].model->name, "Simulated-1MM");
    EXPECT_EQ(records[1].model->flag, TOUPCAM_FLAG_MONO);
    EXPECT_EQ(records[1].model->preview, 2U);
}

TEST_F(SimSession, every_built_in_name_says_that_the_camera_is_simulated) {
    for (const ToupcamDeviceV2& record : enumerated()) {
        EXPECT_EQ(std::string(record.model->name).find("Simulated"), 0U);
        EXPECT_EQ(std::string(record.displayname).find("Simulated"), 0U);
    }
}

TEST_F(SimSession, enumeration_without_a_list_finds_nothing) {
    EXPECT_EQ(Toupcam_EnumV2(nullptr), 0U);
}

TEST_F(SimSession, opened_camera_reports_its_serial_number) {
    char serial[32];
    std::memset(serial, 'x', sizeof serial);
    EXPECT_EQ(Toupcam_get_SerialNumber(open("sim-20mc-1"), serial), S_OK);
    EXPECT_STREQ(serial, "SIM20C0001");
}

TEST_F(SimSession, camera_opens_once_until_it_is_closed) {
    const HToupcam first = open("sim-1mm-1");
    EXPECT_EQ(Toupcam_Open("sim-1mm-1"), nullptr);
    Toupcam_Close(first);
    EXPECT_NE(open("sim-1mm-1"), nullptr);
}

TEST_F(SimSession, unknown_empty_and_null_ids_do_not_open) {
    EXPECT_EQ(Toupcam_Open("no-such-camera"), nullptr);
    EXPECT_EQ(Toupcam_Open(""), nullptr);
    EXPECT_EQ(Toupcam_Open(nullptr), nullptr);
}

TEST_F(SimSession, handle_of_a_new_session_is_never_an_old_one) {
    const HToupcam first = open("sim-1mm-1");
    Toupcam_Close(first);
    EXPECT_NE(open("sim-1mm-1"), first);
}

TEST_F(SimSession, id_of_64_characters_fills_its_field_and_opens) {
    SimCameraText camera;
    camera.id = std::string(64, 'i');
    load(makeScene({camera}));
    const auto records = enumerated();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(std::string(records[0].id, sizeof records[0].id), camera.id);
    // A copy that ends with the field: the address sanitizer reports a read beyond it.
    const auto id = std::make_unique<char[]>(64);
    std::memcpy(id.get(), records[0].id, 64);
    const HToupcam handle = Toupcam_Open(id.get());
    EXPECT_NE(handle, nullptr);
    Toupcam_Close(handle);
}

TEST_F(SimSession, camera_without_a_model_name_has_a_null_name) {
    SimCameraText camera;
    camera.extra = R"(, "model": null)";
    load(makeScene({camera}));
    ASSERT_EQ(enumerated().size(), 1U);
    EXPECT_EQ(enumerated()[0].model->name, nullptr);
}

TEST_F(SimSession, model_record_outlives_the_scene) {
    const auto records = enumerated();
    load(R"({"cameras": []})");
    EXPECT_TRUE(enumerated().empty());
    EXPECT_STREQ(records[0].model->name, "Simulated-20MC");
}

TEST_F(SimSession, camera_that_starts_unplugged_is_listed_when_plugged_in) {
    SimCameraText camera;
    camera.extra = R"(, "plugged": false)";
    load(makeScene({camera}));
    EXPECT_TRUE(enumerated().empty());
    EXPECT_EQ(Toupcam_Open("cam"), nullptr);
    EXPECT_EQ(ToupcamSim_plug("cam"), 1);
    EXPECT_EQ(enumerated().size(), 1U);
    EXPECT_EQ(ToupcamSim_plug("cam"), 0);
}

TEST_F(SimSession, new_session_begins_with_power_on_settings) {
    HToupcam handle = open("sim-20mc-1");
    EXPECT_EQ(Toupcam_put_eSize(handle, 2), S_OK);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, 777), S_OK);
    Toupcam_Close(handle);
    handle = open("sim-20mc-1");
    unsigned index = 99;
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_eSize(handle, &index), S_OK);
    EXPECT_EQ(index, 0U);
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), S_OK);
    EXPECT_EQ(time, 10000U);
}

/// One call of each function that takes a handle, with valid other arguments.
struct HandleCall {
    const char* name;
    HRESULT (*call)(HToupcam);
};

void ignoreEvent(unsigned, void*) {
}

int anyNumber = 0;
int anyNumber2 = 0;
unsigned anyPositive = 0;
unsigned anyPositive2 = 0;
unsigned anyPositive3 = 0;
unsigned short anySmall = 0;
unsigned short anySmall2 = 0;
unsigned short anySmall3 = 0;
short anyTemperature = 0;
char anyText[32];
std::uint8_t anyPixels[64];

#define CALL(name, arguments)                                                                      \
    HandleCall {                                                                                   \
#name, [](HToupcam h) -> HRESULT { return Toupcam_##name arguments; }                      \
    }

const HandleCall handleCalls[] = {
    CALL(get_SerialNumber, (h, anyText)),
    CALL(StartPushMode, (h, ignoreData, nullptr)),
    CALL(StartPullModeWithCallback, (h, ignoreEvent, nullptr)),
    CALL(Snap, (h, 0)),
    CALL(Trigger, (h, 1)),
    CALL(PullImageV2, (h, anyPixels, 24, nullptr)),
    CALL(PullStillImageV2, (h, anyPixels, 24, nullptr)),
    CALL(get_ResolutionNumber, (h)),
    CALL(get_Resolution, (h, 0, &anyNumber, &anyNumber2)),
    CALL(put_eSize, (h, 0)),
    CALL(get_eSize, (h, &anyPositive)),
    CALL(get_FinalSize, (h, &anyNumber, &anyNumber2)),
    CALL(put_Roi, (h, 0, 0, 16, 16)),
    CALL(get_Roi, (h, &anyPositive, &anyPositive2, &anyPositive3, &anyPositive)),
    CALL(put_Option, (h, TOUPCAM_OPTION_FRAMERATE, 0)),
    CALL(get_Option, (h, TOUPCAM_OPTION_FRAMERATE, &anyNumber)),
    CALL(put_RealTime, (h, 1)),
    CALL(get_MaxSpeed, (h)),
    CALL(put_Speed, (h, 0)),
    CALL(get_Speed, (h, &anySmall)),
    CALL(put_ExpoCallback, (h, nullptr, nullptr)),
    CALL(get_AutoExpoEnable, (h, &anyNumber)),
    CALL(put_AutoExpoEnable, (h, 1)),
    CALL(get_AutoExpoTarget, (h, &anySmall)),
    CALL(put_AutoExpoTarget, (h, 100)),
    CALL(get_ExpoTime, (h, &anyPositive)),
    CALL(put_ExpoTime, (h, 10000)),
    CALL(get_ExpTimeRange, (h, &anyPositive, &anyPositive2, &anyPositive3)),
    CALL(get_ExpoAGain, (h, &anySmall)),
    CALL(put_ExpoAGain, (h, 100)),
    CALL(get_ExpoAGainRange, (h, &anySmall, &anySmall2, &anySmall3)),
    CALL(AwbOnePush, (h, nullptr, nullptr)),
    CALL(put_TempTint, (h, 6500, 1000)),
    CALL(get_TempTint, (h, &anyNumber, &anyNumber2)),
    CALL(put_Hue, (h, 0)),
    CALL(get_Hue, (h, &anyNumber)),
    CALL(put_Saturation, (h, 128)),
    CALL(get_Saturation, (h, &anyNumber)),
    CALL(put_Brightness, (h, 0)),
    CALL(get_Brightness, (h, &anyNumber)),
    CALL(put_Contrast, (h, 0)),
    CALL(get_Contrast, (h, &anyNumber)),
    CALL(put_Gamma, (h, 100)),
    CALL(get_Gamma, (h, &anyNumber)),
    CALL(put_Chrome, (h, 0)),
    CALL(get_Chrome, (h, &anyNumber)),
    CALL(put_VFlip, (h, 0)),
    CALL(get_VFlip, (h, &anyNumber)),
    CALL(put_HFlip, (h, 0)),
    CALL(get_HFlip, (h, &anyNumber)),
    CALL(put_Negative, (h, 0)),
    CALL(get_Negative, (h, &anyNumber)),
    CALL(put_HZ, (h, 0)),
    CALL(get_HZ, (h, &anyNumber)),
    CALL(get_FanMaxSpeed, (h)),
    CALL(put_Temperature, (h, 0)),
    CALL(get_Temperature, (h, &anyTemperature)),
};

class SimHandle : public SimTest, public WithSimRow<HandleCall> {};

ROWS_IN(every_function, SimHandle, handleCalls);

ROW_TEST(SimHandle, null_handle_is_an_invalid_argument) {
    EXPECT_EQ(GetParam().call(nullptr), E_INVALIDARG);
}

ROW_TEST(SimHandle, made_up_handle_is_an_invalid_argument) {
    Toupcam_t made{};
    EXPECT_EQ(GetParam().call(&made), E_INVALIDARG);
}

ROW_TEST(SimHandle, closed_handle_is_an_invalid_argument) {
    const HToupcam handle = open("sim-1mm-1");
    Toupcam_Close(handle);
    EXPECT_EQ(GetParam().call(handle), E_INVALIDARG);
}

ROW_TEST(SimHandle, unplugged_camera_is_a_general_failure) {
    const HToupcam handle = open("sim-1mm-1");
    ASSERT_EQ(ToupcamSim_unplug("sim-1mm-1"), 1);
    EXPECT_EQ(GetParam().call(handle), E_GEN_FAILURE);
}

ROW_TEST(SimHandle, injected_failure_is_the_result) {
    const HToupcam handle = open("sim-1mm-1");
    ToupcamSim_failCall((std::string("Toupcam_") + GetParam().name).c_str(), 0, 1, E_ACCESSDENIED);
    EXPECT_EQ(GetParam().call(handle), E_ACCESSDENIED);
    EXPECT_NE(GetParam().call(handle), E_ACCESSDENIED);
}

TEST_F(SimSession, stop_and_close_of_no_handle_do_nothing) {
    Toupcam_t made{};
    EXPECT_EQ(Toupcam_Stop(nullptr), E_INVALIDARG);
    EXPECT_EQ(Toupcam_Stop(&made), E_INVALIDARG);
    Toupcam_Close(nullptr);
    Toupcam_Close(&made);
    EXPECT_EQ(enumerated().size(), 2U);
}

TEST_F(SimSession, unplugged_camera_can_still_be_stopped_and_closed) {
    const HToupcam handle = open("sim-1mm-1");
    ASSERT_EQ(ToupcamSim_unplug("sim-1mm-1"), 1);
    EXPECT_EQ(enumerated().size(), 1U);
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
    Toupcam_Close(handle);
    EXPECT_EQ(Toupcam_Stop(handle), E_INVALIDARG);
}

TEST_F(SimSession, replugged_camera_keeps_id_and_serial_and_opens_under_a_new_handle) {
    const HToupcam gone = open("sim-1mm-1");
    EXPECT_EQ(Toupcam_put_ExpoTime(gone, 1234), S_OK);
    ASSERT_EQ(ToupcamSim_unplug("sim-1mm-1"), 1);
    EXPECT_EQ(ToupcamSim_unplug("sim-1mm-1"), 0);
    ASSERT_EQ(ToupcamSim_plug("sim-1mm-1"), 1);
    const HToupcam back = open("sim-1mm-1");
    EXPECT_NE(back, gone);
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(back, &time), S_OK);
    EXPECT_EQ(time, 50000U);
    EXPECT_EQ(Toupcam_get_ExpoTime(gone, &time), E_GEN_FAILURE);
    // Closing the old handle does not affect the new one.
    Toupcam_Close(gone);
    EXPECT_EQ(Toupcam_Open("sim-1mm-1"), nullptr);
    char serial[32];
    EXPECT_EQ(Toupcam_get_SerialNumber(back, serial), S_OK);
    EXPECT_STREQ(serial, "SIM01M0001");
}

TEST_F(SimSession, loading_a_scene_unplugs_the_cameras_that_are_open) {
    const HToupcam handle = open("sim-1mm-1");
    load(makeScene({SimCameraText()}));
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), E_GEN_FAILURE);
    EXPECT_EQ(ToupcamSim_unplug("sim-1mm-1"), 0);
}

TEST_F(SimSession, version_text_says_simulated) {
    EXPECT_NE(std::string(ToupcamSim_version()).find("simulated"), std::string::npos);
}

} // namespace
