// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

#include <algorithm>
#include <cmath>

namespace {

/// Even light from a lamp on the mains. Reading a frame takes 50 ms, in which the lamp is bright
/// five times at 50 Hz.
SimCameraText lampCamera(int mainsHz, const std::string& exposure = R"("auto": false)") {
    SimCameraText camera = flatCamera();
    camera.fps = 20;
    camera.source = R"({"kind": "flat", "level": 1, "mainsHz": )" + std::to_string(mainsHz) + "}";
    camera.extra = R"(, "sensor": {"fullWell": 100000, "electronsPerCount": 10, "offset": 0,
                                   "readNoise": 0, "electronsPerMs": 100},
                      "exposure": {"min": 10, )" +
                   exposure + "}";
    return camera;
}

/// The mean of each row.
std::vector<double> measureRows(const PushedFrame& frame) {
    std::vector<double> rows;
    for (int y = 0; y < frame.header.biHeight; ++y) {
        double sum = 0;
        for (int x = 0; x < frame.header.biWidth; ++x)
            sum += frame.at(x, y, 0);
        rows.push_back(sum / frame.header.biWidth);
    }
    return rows;
}

/// Half the difference between the brightest and the darkest row, over the mean.
double measureBands(const PushedFrame& frame) {
    const std::vector<double> rows = measureRows(frame);
    const auto [least, most] = std::minmax_element(rows.begin(), rows.end());
    return (*most - *least) / 2 / measureMean(frame);
}

int countRises(const PushedFrame& frame) {
    const std::vector<double> rows = measureRows(frame);
    const double mean = measureMean(frame);
    int rises = 0;
    for (std::size_t y = 1; y < rows.size(); ++y)
        rises += rows[y - 1] < mean && rows[y] >= mean ? 1 : 0;
    return rises;
}

unsigned readTime(HToupcam handle) {
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), S_OK);
    return time;
}

class SimFlicker : public SimPictureTest {
protected:
    /// The bands in a picture with this exposure.
    double bands(HToupcam handle, unsigned microseconds) {
        EXPECT_EQ(Toupcam_put_ExpoTime(handle, microseconds), S_OK);
        return measureBands(takeOne(handle));
    }
};

/// Mains frequency, exposure, and the depth of the bands computed from the integral of the lamp's
/// power.
struct BandRow {
    const char* name;
    int mainsHz;
    unsigned microseconds;
};

const BandRow bandRows[] = {
    {"short exposure at 50 Hz", 50, 4000},
    {"half a period of 50 Hz", 50, 10000},
    {"more than half a period of 50 Hz", 50, 13000},
    {"half a period of 60 Hz", 60, 8333},
    {"that of 50 Hz at 60 Hz", 60, 10000},
    {"that of 60 Hz at 50 Hz", 50, 8333},
    {"direct current", 0, 4000},
};

class SimBands : public SimFlicker, public WithSimRow<BandRow> {};

ROWS_IN(rows, SimBands, bandRows);

ROW_TEST(SimBands, are_as_deep_as_computed) {
    const double width = 3.14159265358979 * 2 * GetParam().mainsHz * GetParam().microseconds * 1e-6;
    const double expected = width > 0 ? std::abs(std::sin(width) / width) : 0.0;
    // The mean of a row of 320 pixels is off by a few per cent of its shot noise.
    EXPECT_NEAR(bands(openOnly(lampCamera(GetParam().mainsHz)), GetParam().microseconds), expected,
                0.03);
}

TEST_F(SimFlicker, lamp_is_bright_twice_in_each_period_while_a_frame_is_read) {
    const HToupcam handle = openOnly(lampCamera(50));
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 4000), S_OK);
    EXPECT_NEAR(countRises(takeOne(handle)), 5, 1); // a band may be cut at the edge
}

TEST_F(SimFlicker, mean_of_whole_periods_is_that_of_steady_light) {
    const HToupcam handle = openOnly(lampCamera(50));
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 4000), S_OK);
    EXPECT_NEAR(measureMean(takeOne(handle)), 40.0, 0.4);
}

TEST_F(SimFlicker, region_shows_the_bands_of_its_own_rows) {
    const HToupcam handle = openOnly(lampCamera(50));
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 4000), S_OK);
    const std::vector<double> whole = measureRows(takeOne(handle));
    ASSERT_EQ(Toupcam_put_Roi(handle, 0, 100, 320, 40), S_OK);
    // 20 frames a second are in step with 50 Hz: each frame has its bands in the same place.
    const std::vector<double> part = measureRows(takeOne(handle));
    for (std::size_t y = 0; y < part.size(); ++y)
        EXPECT_NEAR(part[y], whole[100 + y], 2.5) << y;
}

TEST_F(SimFlicker, bands_move_when_the_frame_rate_is_not_in_step) {
    SimCameraText camera = lampCamera(50);
    camera.fps = 30;
    const HToupcam handle = openOnly(camera);
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 4000), S_OK);
    double least = 255;
    double most = 0;
    for (const PushedFrame& frame : take(handle, 8)) {
        least = std::min(least, measureRows(frame)[100]);
        most = std::max(most, measureRows(frame)[100]);
    }
    EXPECT_GT(most - least, 20.0);
}

/// The light frequency that is set, with a lamp at 50 Hz, and the time that auto-exposure chooses:
/// 12 ms would be just right.
struct CompensationRow {
    const char* name;
    int frequency;
    unsigned least;
    unsigned most;
    bool bands;
};

const CompensationRow compensations[] = {
    {"50 Hz is a whole half period and has no bands", 1, 10000, 10000, false},
    {"60 Hz is half a period of its own and has bands", 0, 8333, 8333, true},
    {"direct current is any time and has bands", 2, 11500, 12500, true},
};

class SimCompensation : public SimFlicker, public WithSimRow<CompensationRow> {};

ROWS_IN(rows, SimCompensation, compensations);

ROW_TEST(SimCompensation, is_what_auto_exposure_does) {
    const HToupcam handle =
        openOnly(lampCamera(50, R"("auto": true, "target": 120, "default": 1000)"));
    ASSERT_EQ(Toupcam_put_HZ(handle, GetParam().frequency), S_OK);
    const PushedFrame frame = take(handle, 26).back();
    EXPECT_GE(readTime(handle), GetParam().least);
    EXPECT_LE(readTime(handle), GetParam().most);
    EXPECT_NEAR(measureMean(frame), 120.0, 4.0); // the gain makes up for the time
    if (GetParam().bands)
        EXPECT_GT(measureBands(frame), 0.1);
    else
        EXPECT_LT(measureBands(frame), 0.04);
}

TEST_F(SimFlicker, a_frequency_set_after_auto_exposure_has_settled_changes_the_time) {
    const HToupcam handle =
        openOnly(lampCamera(50, R"("auto": true, "target": 120, "default": 12000)"));
    take(handle, 5);
    EXPECT_GT(readTime(handle), 11000U);
    ASSERT_EQ(Toupcam_put_HZ(handle, 1), S_OK);
    take(handle, 3);
    EXPECT_EQ(readTime(handle), 10000U);
}

TEST_F(SimFlicker, long_exposures_are_multiples_of_the_half_period) {
    const HToupcam handle =
        openOnly(lampCamera(0, R"("auto": true, "target": 230, "default": 1000)"));
    ASSERT_EQ(Toupcam_put_HZ(handle, 0), S_OK);
    take(handle, 26);
    EXPECT_EQ(readTime(handle), 16667U); // two times 1/120 s
}

TEST_F(SimFlicker, too_much_light_is_exposed_for_less_than_half_a_period) {
    const HToupcam handle =
        openOnly(lampCamera(0, R"("auto": true, "target": 50, "default": 20000)"));
    ASSERT_EQ(Toupcam_put_HZ(handle, 1), S_OK);
    const PushedFrame frame = take(handle, 26).back();
    EXPECT_NEAR(readTime(handle), 5000, 250);
    EXPECT_NEAR(measureMean(frame), 50.0, 2.0);
}

TEST_F(SimFlicker, manual_exposure_is_left_alone) {
    const HToupcam handle = openOnly(lampCamera(50));
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 12345), S_OK);
    ASSERT_EQ(Toupcam_put_HZ(handle, 1), S_OK);
    take(handle, 3);
    EXPECT_EQ(readTime(handle), 12345U);
}

} // namespace
