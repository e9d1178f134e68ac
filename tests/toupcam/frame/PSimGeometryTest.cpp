// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

namespace {

struct Region {
    unsigned x = 99;
    unsigned y = 99;
    unsigned width = 99;
    unsigned height = 99;

    bool operator==(const Region& other) const {
        return x == other.x && y == other.y && width == other.width && height == other.height;
    }
};

HRESULT put(HToupcam handle, const Region& region) {
    return Toupcam_put_Roi(handle, region.x, region.y, region.width, region.height);
}

Region readRegion(HToupcam handle) {
    Region region;
    EXPECT_EQ(Toupcam_get_Roi(handle, &region.x, &region.y, &region.width, &region.height), S_OK);
    return region;
}

struct Size {
    int width = 0;
    int height = 0;

    bool operator==(const Size& other) const {
        return width == other.width && height == other.height;
    }
};

Size frameSize(const PushedFrame& frame) {
    return {frame.header.biWidth, frame.header.biHeight};
}

Size readFinalSize(HToupcam handle) {
    Size size;
    EXPECT_EQ(Toupcam_get_FinalSize(handle, &size.width, &size.height), S_OK);
    return size;
}

class SimGeometry : public SimPictureTest {};

TEST_F(SimGeometry, region_is_the_whole_sensor_at_first) {
    EXPECT_EQ(readRegion(openOnly({})), (Region{0, 0, 96, 64}));
}

struct RegionRow {
    const char* name;
    Region region;
    HRESULT expected;
};

const RegionRow regions[] = {
    {"smallest region", {2, 2, 4, 4}, S_OK},
    {"in the last corner", {92, 60, 4, 4}, S_OK},
    {"whole", {0, 0, 96, 64}, S_OK},
    {"too narrow", {0, 0, 2, 4}, E_INVALIDARG},
    {"too low", {0, 0, 4, 0}, E_INVALIDARG},
    {"width not a multiple of 4", {0, 0, 6, 4}, E_INVALIDARG},
    {"height not a multiple of 4", {0, 0, 4, 10}, E_INVALIDARG},
    {"odd left", {1, 0, 8, 8}, E_INVALIDARG},
    {"odd top", {0, 3, 8, 8}, E_INVALIDARG},
    {"over the right edge", {94, 0, 4, 4}, E_INVALIDARG},
    {"over the lower edge", {0, 62, 4, 4}, E_INVALIDARG},
    {"far too wide", {0, 0, 100, 64}, E_INVALIDARG},
    {"sum beyond 32 bits", {4294967292U, 0, 8, 8}, E_INVALIDARG},
};

class SimRegion : public SimGeometry, public WithSimRow<RegionRow> {};

ROWS_IN(rows, SimRegion, regions);

ROW_TEST(SimRegion, is_accepted_or_refused_and_the_old_one_kept) {
    const HToupcam handle = openOnly({});
    const Region before{8, 8, 16, 12};
    ASSERT_EQ(put(handle, before), S_OK);
    EXPECT_EQ(put(handle, GetParam().region), GetParam().expected);
    EXPECT_EQ(readRegion(handle), GetParam().expected == S_OK ? GetParam().region : before);
}

TEST_F(SimGeometry, region_of_zeros_is_the_whole_sensor) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(put(handle, {8, 8, 16, 12}), S_OK);
    EXPECT_EQ(put(handle, {0, 0, 0, 0}), S_OK);
    EXPECT_EQ(readRegion(handle), (Region{0, 0, 96, 64}));
}

TEST_F(SimGeometry, whole_sensor_is_accepted_even_if_it_is_not_a_multiple_of_4) {
    SimCameraText camera;
    camera.width = 101;
    camera.height = 67;
    const HToupcam handle = openOnly(camera);
    EXPECT_EQ(put(handle, {0, 0, 101, 67}), S_OK);
    EXPECT_EQ(readRegion(handle), (Region{0, 0, 101, 67}));
    EXPECT_EQ(put(handle, {2, 0, 99, 67}), E_INVALIDARG);
}

TEST_F(SimGeometry, other_resolution_resets_the_region_the_same_one_does_not) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(put(handle, {8, 8, 16, 12}), S_OK);
    ASSERT_EQ(Toupcam_put_eSize(handle, 0), S_OK);
    EXPECT_EQ(readRegion(handle), (Region{8, 8, 16, 12}));
    ASSERT_EQ(Toupcam_put_eSize(handle, 1), S_OK);
    EXPECT_EQ(readRegion(handle), (Region{0, 0, 48, 32}));
}

TEST_F(SimGeometry, null_output_of_the_region_is_refused) {
    const HToupcam handle = openOnly({});
    unsigned value = 0;
    EXPECT_EQ(Toupcam_get_Roi(handle, nullptr, &value, &value, &value), E_POINTER);
    EXPECT_EQ(Toupcam_get_Roi(handle, &value, &value, &value, nullptr), E_POINTER);
}

TEST_F(SimGeometry, region_shows_that_part_of_the_sensor) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(put(handle, {40, 16, 16, 32}), S_OK); // exactly the green patch
    const PushedFrame frame = takeOne(handle);
    EXPECT_EQ(frameSize(frame), (Size{16, 32}));
    EXPECT_EQ(channelMean(frame, 0), 0.0);
    EXPECT_EQ(channelMean(frame, 1), 255.0);
    EXPECT_EQ(channelMean(frame, 2), 0.0);
}

TEST_F(SimGeometry, region_of_a_drifting_specimen_is_cut_out_of_what_is_seen) {
    const PictureFolder folder;
    const auto column = [](int x, int) { return x < 48 ? std::string(3, '\0') : "\xff\xff\xff"; };
    const HToupcam handle = openOnly(pictureCamera(folder.paint("half.ppm", 96, 64, column)));
    ASSERT_EQ(put(handle, {40, 0, 16, 64}), S_OK);
    const PushedFrame frame = takeOne(handle);
    EXPECT_EQ(frame.at(7, 30, 0), 0);
    EXPECT_NEAR(frame.at(8, 30, 0), 200, 4);
}

/// Settings on a sensor of 101 x 67 pixels, and the resulting size of the frames.
struct SizeRow {
    const char* name;
    Region region;
    int binning;
    int rotation;
    Size size;
};

const SizeRow sizes[] = {
    {"as it is", {0, 0, 0, 0}, 1, 0, {101, 67}},
    {"added two by two", {0, 0, 0, 0}, 2, 0, {50, 33}},
    {"added three by three", {0, 0, 0, 0}, 3, 0, {33, 22}},
    {"averaged four by four", {0, 0, 0, 0}, 0x84, 0, {25, 16}},
    {"turned right", {0, 0, 0, 0}, 1, 90, {67, 101}},
    {"turned round", {0, 0, 0, 0}, 1, 180, {101, 67}},
    {"turned left", {0, 0, 0, 0}, 1, 270, {67, 101}},
    {"region", {10, 20, 40, 24}, 1, 0, {40, 24}},
    {"region averaged three by three and turned", {10, 20, 40, 24}, 0x83, 90, {8, 13}},
    {"one pixel", {10, 20, 4, 4}, 4, 270, {1, 1}},
};

class SimFrameSize : public SimGeometry, public WithSimRow<SizeRow> {
protected:
    HToupcam openSet(unsigned bits) {
        SimCameraText camera;
        camera.width = 101;
        camera.height = 67;
        camera.bits = bits;
        const HToupcam handle = openOnly(camera);
        EXPECT_EQ(put(handle, GetParam().region), S_OK);
        EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, GetParam().binning), S_OK);
        EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_ROTATE, GetParam().rotation), S_OK);
        return handle;
    }
};

ROWS_IN(rows, SimFrameSize, sizes);

ROW_TEST(SimFrameSize, is_known_beforehand_and_is_that_of_the_frames) {
    for (const unsigned bits : {8U, 24U}) {
        const HToupcam handle = openSet(bits);
        EXPECT_EQ(readFinalSize(handle), GetParam().size);
        const PushedFrame frame = takeOne(handle);
        EXPECT_EQ(frameSize(frame), GetParam().size);
        EXPECT_EQ(frame.header.biSizeImage, frame.stride() * unsigned(frame.header.biHeight));
        Toupcam_Close(handle);
    }
}

ROW_TEST(SimFrameSize, rows_are_padded_with_zeros) {
    const HToupcam handle = openSet(24);
    ASSERT_EQ(Toupcam_put_Negative(handle, 1), S_OK); // no zeros elsewhere in the corners
    const PushedFrame frame = takeOne(handle);
    const std::size_t rowBytes = std::size_t(frame.header.biWidth) * 3;
    for (std::size_t start = 0; start < frame.bytes.size(); start += frame.stride()) {
        for (std::size_t i = rowBytes; i < frame.stride(); ++i)
            EXPECT_EQ(frame.bytes[start + i], 0);
    }
}

ROW_TEST(SimFrameSize, is_that_of_pulled_pictures) {
    const HToupcam handle = openSet(24);
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamFrameInfoV2 info{};
    ASSERT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &info), S_OK);
    EXPECT_EQ((Size{int(info.width), int(info.height)}), GetParam().size);
    Toupcam_Stop(handle);
}

TEST_F(SimGeometry, index_of_the_resolution_stays_at_any_size) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(Toupcam_put_eSize(handle, 1), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, 2), S_OK);
    unsigned index = 99;
    EXPECT_EQ(Toupcam_get_eSize(handle, &index), S_OK);
    EXPECT_EQ(index, 1U);
    EXPECT_EQ(readFinalSize(handle), (Size{24, 16}));
    int width = 0;
    int height = 0;
    EXPECT_EQ(Toupcam_get_Resolution(handle, 1, &width, &height), S_OK);
    EXPECT_EQ(width, 48);
}

TEST_F(SimGeometry, ready_made_frames_are_never_processed) {
    SimCameraText camera;
    camera.source = R"({"kind": "ring", "frames": 1})";
    const HToupcam handle = openOnly(camera);
    const PushedFrame before = takeOne(handle);
    EXPECT_EQ(put(handle, {8, 8, 16, 12}), E_NOTIMPL);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, 2), E_NOTIMPL);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_ROTATE, 90), E_NOTIMPL);
    EXPECT_EQ(readRegion(handle), (Region{0, 0, 96, 64}));
    EXPECT_EQ(Toupcam_put_Negative(handle, 1), S_OK);
    EXPECT_EQ(Toupcam_put_HFlip(handle, 1), S_OK);
    EXPECT_EQ(readFinalSize(handle), (Size{96, 64}));
    EXPECT_EQ(takeOne(handle).at(90, 60, 0), before.at(90, 60, 0));
}

/// A change of size on a running stream, and the resulting size.
struct ChangeStep {
    HRESULT (*apply)(HToupcam);
    Size size;
};

const ChangeStep changeSteps[] = {
    {[](HToupcam h) { return Toupcam_put_Option(h, TOUPCAM_OPTION_BINNING, 2); }, {48, 32}},
    {[](HToupcam h) { return Toupcam_put_Option(h, TOUPCAM_OPTION_ROTATE, 90); }, {32, 48}},
    {[](HToupcam h) { return Toupcam_put_Roi(h, 8, 8, 40, 20); }, {10, 20}},
    {[](HToupcam h) { return Toupcam_put_Option(h, TOUPCAM_OPTION_BINNING, 1); }, {20, 40}},
    {[](HToupcam h) { return Toupcam_put_eSize(h, 1); }, {32, 48}},
    {[](HToupcam h) { return Toupcam_put_Option(h, TOUPCAM_OPTION_ROTATE, 0); }, {48, 32}},
};

TEST_F(SimGeometry, size_changes_from_frame_to_frame_of_a_running_stream) {
    const HToupcam handle = openOnly({});
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    for (const ChangeStep& step : changeSteps) {
        ASSERT_TRUE(log.waitFor(log.total() + 3));
        ASSERT_EQ(step.apply(handle), S_OK);
        ASSERT_TRUE(eventually([&] { return frameSize(log.last()) == step.size; }));
    }
    Toupcam_Stop(handle);
    for (const PushedFrame& frame : log.frames()) {
        const auto height = std::size_t(frame.header.biHeight);
        EXPECT_EQ(frame.bytes.size(), frame.stride() * height);
    }
}

TEST_F(SimGeometry, no_frame_is_lost_by_a_change_of_size) {
    SimCameraText camera;
    camera.fps = 5; // slow enough for a busy machine to take every frame in time
    const HToupcam handle = openOnly(camera);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    for (const ChangeStep& step : changeSteps) {
        ASSERT_TRUE(log.waitFor(log.total() + 1));
        ASSERT_EQ(step.apply(handle), S_OK);
    }
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(readCounts().produced, log.total());
}

TEST_F(SimGeometry, frame_whose_size_was_queried_keeps_it) {
    const HToupcam handle = openOnly({});
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamFrameInfoV2 info{};
    ASSERT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &info), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, 0x82), S_OK);
    const std::size_t before = events.count(TOUPCAM_EVENT_IMAGE);
    ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE, before + 3));
    std::vector<std::uint8_t> pixels(96 * 64 * 3);
    ASSERT_EQ(Toupcam_PullImageV2(handle, pixels.data(), 24, &info), S_OK);
    EXPECT_EQ(info.width, 96U);
    EXPECT_EQ(info.height, 64U);
    EXPECT_TRUE(eventually([handle, &info] {
        return Toupcam_PullImageV2(handle, nullptr, 24, &info) == S_OK && info.width == 48;
    }));
    Toupcam_Stop(handle);
}

TEST_F(SimGeometry, still_picture_shows_the_same_part_at_its_own_resolution) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(Toupcam_put_eSize(handle, 1), S_OK);
    ASSERT_EQ(put(handle, {20, 8, 8, 16}), S_OK); // the green patch, at half the resolution
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, 0x82), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_ROTATE, 90), S_OK);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_EQ(Toupcam_Snap(handle, 0), S_OK);
    ASSERT_TRUE(log.waitForStill());
    Toupcam_Stop(handle);
    for (const PushedFrame& frame : log.frames()) {
        EXPECT_EQ(frameSize(frame), frame.isSnapshot ? (Size{16, 8}) : (Size{8, 4}));
        EXPECT_EQ(channelMean(frame, 1), 255.0);
        EXPECT_EQ(channelMean(frame, 0), 0.0);
    }
}

} // namespace
