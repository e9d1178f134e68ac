// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

namespace {

/// A camera with cooler and fan whose temperature changes a thousand times faster than in reality.
SimCameraText cooledCamera(const std::string& more = R"(, "thermalSpeed": 1000)") {
    SimCameraText camera;
    camera.extra = R"(, "flags": ["TEC_ONOFF", "FAN"], "fanLevels": 4)" + more;
    return camera;
}

class SimThermal : public SimPictureTest {
protected:
    static int temperature(HToupcam handle) {
        short value = 9999;
        EXPECT_EQ(Toupcam_get_Temperature(handle, &value), S_OK);
        return value;
    }
    static int option(HToupcam handle, unsigned option) {
        int value = 9999;
        EXPECT_EQ(Toupcam_get_Option(handle, option, &value), S_OK);
        return value;
    }
    static int voltage(HToupcam handle) { return option(handle, TOUPCAM_OPTION_TEC_VOLTAGE); }
    /// Waits until the temperature is within half a degree of this value.
    static bool reaches(HToupcam handle, int tenths) {
        return eventually([=] { return std::abs(temperature(handle) - tenths) <= 5; });
    }
    static void cool(HToupcam handle, short target, int fan) {
        EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_FAN, fan), S_OK);
        EXPECT_EQ(Toupcam_put_Temperature(handle, target), S_OK);
        EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TEC, 1), S_OK);
    }
};

struct HeatRow {
    const char* name;
    const char* camera;
    unsigned option;
    int value;
    HRESULT expected;
};

const HeatRow heat[] = {
    {"fan at its highest level", "sim-20mc-1", TOUPCAM_OPTION_FAN, 3, S_OK},
    {"fan beyond its highest level", "sim-20mc-1", TOUPCAM_OPTION_FAN, 4, E_INVALIDARG},
    {"fan below zero", "sim-20mc-1", TOUPCAM_OPTION_FAN, -1, E_INVALIDARG},
    {"fan of a camera without one", "sim-1mm-1", TOUPCAM_OPTION_FAN, 1, E_NOTIMPL},
    {"cooler", "sim-20mc-1", TOUPCAM_OPTION_TEC, 1, S_OK},
    {"cooler that is not a switch", "sim-20mc-1", TOUPCAM_OPTION_TEC, 2, E_INVALIDARG},
    {"cooler of a camera without one", "sim-1mm-1", TOUPCAM_OPTION_TEC, 0, E_NOTIMPL},
    {"voltage is read only", "sim-20mc-1", TOUPCAM_OPTION_TEC_VOLTAGE, 10, E_NOTIMPL},
    {"highest voltage is read only", "sim-20mc-1", TOUPCAM_OPTION_TEC_VOLTAGE_MAX, 10, E_NOTIMPL},
};

class SimHeatOption : public SimThermal, public WithSimRow<HeatRow> {};

ROWS_IN(rows, SimHeatOption, heat);

ROW_TEST(SimHeatOption, is_taken_or_refused) {
    const HToupcam handle = open(GetParam().camera);
    EXPECT_EQ(Toupcam_put_Option(handle, GetParam().option, GetParam().value), GetParam().expected);
    if (GetParam().expected == S_OK) {
        EXPECT_EQ(option(handle, GetParam().option), GetParam().value);
    }
}

TEST_F(SimThermal, fan_and_cooler_are_off_at_first_and_in_each_session) {
    const HToupcam handle = openOnly(cooledCamera());
    cool(handle, 0, 4);
    Toupcam_Close(handle);
    const HToupcam again = open();
    EXPECT_EQ(option(again, TOUPCAM_OPTION_FAN), 0);
    EXPECT_EQ(option(again, TOUPCAM_OPTION_TEC), 0);
    EXPECT_EQ(voltage(again), 0);
    EXPECT_EQ(option(again, TOUPCAM_OPTION_TEC_VOLTAGE_MAX), 120);
}

TEST_F(SimThermal, target_is_taken_from_50_below_to_40_degrees) {
    const HToupcam handle = openOnly(cooledCamera());
    for (const short target : {std::int16_t{-500}, std::int16_t{400}})
        EXPECT_EQ(Toupcam_put_Temperature(handle, target), S_OK);
    for (const short target : {std::int16_t{-501}, std::int16_t{401}, std::int16_t{-32768}})
        EXPECT_EQ(Toupcam_put_Temperature(handle, target), E_INVALIDARG);
    EXPECT_EQ(Toupcam_get_Temperature(handle, nullptr), E_POINTER);
}

TEST_F(SimThermal, camera_without_a_cooler_reports_no_temperature) {
    const HToupcam handle = open("sim-1mm-1");
    short value = 0;
    int number = 0;
    EXPECT_EQ(Toupcam_put_Temperature(handle, 100), E_NOTIMPL);
    EXPECT_EQ(Toupcam_get_Temperature(handle, &value), E_NOTIMPL);
    EXPECT_EQ(Toupcam_get_Option(handle, TOUPCAM_OPTION_TEC_VOLTAGE, &number), E_NOTIMPL);
    EXPECT_EQ(Toupcam_get_Option(handle, TOUPCAM_OPTION_TEC_VOLTAGE_MAX, &number), E_NOTIMPL);
}

TEST_F(SimThermal, idle_camera_is_a_little_warmer_than_the_air) {
    const HToupcam handle = openOnly(cooledCamera(R"(, "ambientC": -10, "thermalSpeed": 0)"));
    EXPECT_EQ(temperature(handle), -70);
}

TEST_F(SimThermal, streaming_warms_the_sensor_until_it_ends) {
    const HToupcam handle = openOnly(cooledCamera());
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_TRUE(reaches(handle, 340)); // 22 degrees, plus 3 and 9 kelvin
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_TRUE(reaches(handle, 250));
}

TEST_F(SimThermal, fan_carries_half_of_the_heat_away) {
    const HToupcam handle = openOnly(cooledCamera());
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_FAN, 4), S_OK);
    EXPECT_TRUE(reaches(handle, 280));
}

TEST_F(SimThermal, cooler_reaches_its_target_and_holds_it_with_less_than_full_voltage) {
    const HToupcam handle = openOnly(cooledCamera());
    cool(handle, 50, 4);
    ASSERT_TRUE(reaches(handle, 50));
    // 23.5 degrees without the cooler; 18.5 of the 45 kelvin that it can do: 49 of 120.
    EXPECT_TRUE(eventually([handle] { return std::abs(voltage(handle) - 49) <= 1; }));
    EXPECT_TRUE(reaches(handle, 50));
}

TEST_F(SimThermal, sensor_warms_up_again_when_the_cooler_is_switched_off) {
    const HToupcam handle = openOnly(cooledCamera());
    cool(handle, 0, 4);
    ASSERT_TRUE(reaches(handle, 0));
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TEC, 0), S_OK);
    EXPECT_EQ(voltage(handle), 0);
    EXPECT_TRUE(reaches(handle, 235));
}

TEST_F(SimThermal, target_out_of_reach_takes_all_the_voltage) {
    const HToupcam handle = openOnly(cooledCamera());
    cool(handle, -500, 4);
    EXPECT_TRUE(reaches(handle, -215)); // 23.5 degrees minus 45 kelvin
    EXPECT_EQ(voltage(handle), 120);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_FAN, 0), S_OK);
    EXPECT_TRUE(reaches(handle, 70)); // 25 degrees minus 40 % of 45 kelvin
    EXPECT_EQ(voltage(handle), 120);
}

TEST_F(SimThermal, cooler_never_heats) {
    const HToupcam handle = openOnly(cooledCamera());
    cool(handle, 0, 0);
    ASSERT_TRUE(reaches(handle, 70));
    ASSERT_EQ(Toupcam_put_Temperature(handle, 400), S_OK);
    EXPECT_EQ(voltage(handle), 0);
    EXPECT_TRUE(reaches(handle, 250));
}

TEST_F(SimThermal, closed_camera_is_not_cooled_any_more) {
    HToupcam handle = openOnly(cooledCamera(R"(, "thermalSpeed": 1000)"));
    cool(handle, -100, 4);
    ASSERT_TRUE(reaches(handle, -100));
    Toupcam_Close(handle);
    handle = open();
    EXPECT_TRUE(reaches(handle, 250));
}

/// In the dark, with a sensor at the given temperature, which nothing changes.
class SimDark : public SimThermal {
protected:
    HToupcam openDark(double celsius, const std::string& flags = "") {
        SimCameraText camera = flatCamera();
        camera.source = R"({"kind": "flat", "level": 0})";
        camera.extra =
            R"(, "sensor": {"fullWell": 100000, "electronsPerCount": 10, "offset": 8,
                                       "readNoise": 20, "darkCurrent": 2000},
                          "exposure": {"auto": false, "default": 200000})" +
            (flags.empty() ? R"(, "thermalSpeed": 0, "ambientC": )" + std::to_string(celsius - 3)
                           : flags);
        return openOnly(camera);
    }
    Transfer dark(HToupcam handle, unsigned microseconds) {
        EXPECT_EQ(Toupcam_put_ExpoTime(handle, microseconds), S_OK);
        const auto frames = take(handle, 2);
        return measureTransfer(frames[0], frames[1]);
    }
};

TEST_F(SimDark, current_grows_with_the_exposure_time) {
    const HToupcam handle = openDark(25);
    // 2000 electrons a second, 10 for each count.
    EXPECT_NEAR(dark(handle, 50).mean, offset, 0.2);
    EXPECT_NEAR(dark(handle, 100000).mean, offset + 20, 0.3);
    EXPECT_NEAR(dark(handle, 400000).mean, offset + 80, 0.5);
}

TEST_F(SimDark, current_doubles_every_6_3_degrees) {
    EXPECT_NEAR(dark(openDark(25 - 6.3), 200000).mean, offset + 20, 0.3);
    EXPECT_NEAR(dark(openDark(25), 200000).mean, offset + 40, 0.4);
    EXPECT_NEAR(dark(openDark(25 + 12.6), 200000).mean, offset + 160, 1.0);
}

TEST_F(SimDark, current_is_noisy_like_light) {
    const HToupcam handle = openDark(25);
    const auto variance = [](double electrons) {
        return (readNoise * readNoise + electrons) / 100.0 + 1.0 / 12.0;
    };
    EXPECT_NEAR(dark(handle, 200000).variance, variance(400), 0.3);
    EXPECT_NEAR(dark(handle, 800000).variance, variance(1600), 0.6);
}

TEST_F(SimDark, current_fills_the_pixel_up) {
    SimCameraText camera = flatCamera();
    camera.extra = R"(, "sensor": {"fullWell": 1000, "electronsPerCount": 10, "offset": 8,
                                   "readNoise": 0, "electronsPerMs": 100, "darkCurrent": 1000000},
                      "exposure": {"auto": false, "default": 20000})";
    EXPECT_NEAR(measureMean(takeOne(openOnly(camera))), 108.0, 0.5);
}

TEST_F(SimDark, cooled_sensor_has_darker_pictures) {
    const HToupcam handle = openDark(0, R"(, "flags": ["TEC_ONOFF"], "thermalSpeed": 10000)");
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(eventually([&log] { return log.total() > 0 && measureMean(log.last()) > 80; }));
    ASSERT_EQ(Toupcam_put_Temperature(handle, 0), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TEC, 1), S_OK);
    EXPECT_TRUE(eventually([&log] { return measureMean(log.last()) < 40; }));
    Toupcam_Stop(handle);
}

} // namespace
