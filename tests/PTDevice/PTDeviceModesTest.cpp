// SPDX-License-Identifier: MIT
// The camera's resolutions as the host's modes.
#include <PTDevice/SimFixture.h>

#include <QSignalSpy>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string threeResolutions =
    R"([{"width": 4000, "height": 3000}, {"width": 2000, "height": 1500}, {"width": 1000, "height": 750}])";

class PTDeviceModes : public SimFixture {
protected:
    PTDeviceModes() {
        loadScene({SimCameraText().withResolutions(threeResolutions)});
        device = open();
        SimJournal::clear();
    }

    std::unique_ptr<PTDevice> device;
};

PDeviceMode modeWithId(const char* id) {
    PDeviceMode mode;
    mode.id = id;
    return mode;
}

} // namespace

TEST_F(PTDeviceModes, three_resolutions_are_three_modes_in_order) {
    const QList<PDeviceMode> modes = device->getSupportModes();
    EXPECT_THAT(modes, ElementsAre(PDeviceMode{4000, 3000, u"4000x3000"_qs, "0", 24},
                                   PDeviceMode{2000, 1500, u"2000x1500"_qs, "1", 24},
                                   PDeviceMode{1000, 750, u"1000x750"_qs, "2", 24}));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_get_ResolutionNumber(h1) = 3",
                                                 "Toupcam_get_Resolution(h1, 0, 4000, 3000) = 0",
                                                 "Toupcam_get_Resolution(h1, 1, 2000, 1500) = 0",
                                                 "Toupcam_get_Resolution(h1, 2, 1000, 750) = 0"));
}

TEST_F(PTDeviceModes, no_resolutions_are_an_empty_list_and_no_current_mode) {
    ToupcamSim_failCall("Toupcam_get_ResolutionNumber", 0, 0, 0);
    EXPECT_THAT(device->getSupportModes(), IsEmpty());
    EXPECT_EQ(device->getCurrentMode(), PDeviceMode());
}

TEST_F(PTDeviceModes, more_resolutions_than_a_models_record_holds_are_as_many_modes) {
    ToupcamSim_failCall("Toupcam_get_ResolutionNumber", 0, 0, 40);
    const QList<PDeviceMode> modes = device->getSupportModes();
    ASSERT_EQ(modes.size(), 40);
    EXPECT_EQ(modes[2], (PDeviceMode{1000, 750, u"1000x750"_qs, "2", 24}));
    EXPECT_EQ(modes[39], (PDeviceMode{0, 0, u"0x0"_qs, "39", 24}));
}

TEST_F(PTDeviceModes, a_failed_count_is_an_empty_list_and_not_two_billion_modes) {
    ToupcamSim_failCall("Toupcam_get_ResolutionNumber", 0, 0, E_GEN_FAILURE);
    EXPECT_THAT(device->getSupportModes(), IsEmpty());
    EXPECT_EQ(device->getCurrentMode(), PDeviceMode());
    EXPECT_THAT(SimJournal::calls("Toupcam_get_Resolution"), IsEmpty());
}

TEST_F(PTDeviceModes, a_resolution_that_cannot_be_read_is_a_mode_of_size_zero) {
    ToupcamSim_failCall("Toupcam_get_Resolution", 1, 1, E_FAIL);
    const QList<PDeviceMode> modes = device->getSupportModes();
    ASSERT_EQ(modes.size(), 3);
    EXPECT_EQ(modes[1], (PDeviceMode{0, 0, u"0x0"_qs, "1", 24}));
}

TEST_F(PTDeviceModes, the_current_mode_follows_the_sdk) {
    ASSERT_EQ(Toupcam_put_eSize(device->sdkHandle(), 2), S_OK);
    EXPECT_EQ(device->getCurrentMode().id, "2");
}

TEST_F(PTDeviceModes, the_modes_are_read_before_the_current_index) {
    device->getCurrentMode();
    const std::vector<std::string> lines = SimJournal::lines();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines.front(), "Toupcam_get_ResolutionNumber(h1) = 3");
    EXPECT_EQ(lines.back(), "Toupcam_get_eSize(h1, 0) = 0");
}

namespace {

/// A camera that overrides its modes.
class DeviceWithModes : public PTDevice {
public:
    explicit DeviceWithModes(const ToupcamDeviceV2& record)
        : PTDevice(record) {}
    QList<PDeviceMode> getSupportModes() override {
        return {{1, 1, u"hexadecimal"_qs, "0x1", 24},
                {2, 2, u"decimal"_qs, "01", 24},
                {8, 8, u"eight"_qs, "8", 24},
                {10, 10, u"ten"_qs, "010", 24}};
    }
};

} // namespace

TEST_F(PTDeviceModes, the_current_mode_is_of_the_list_that_the_device_overrides) {
    device.reset();
    DeviceWithModes derived(record());
    ASSERT_EQ(Toupcam_put_eSize(derived.sdkHandle(), 1), S_OK);
    EXPECT_EQ(derived.getCurrentMode().name, u"decimal"_qs)
        << "ids are decimal, whatever they begin with";
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, E_FAIL);
    EXPECT_EQ(derived.getCurrentMode().name, u"hexadecimal"_qs)
        << "its id is not a decimal number, and so counts as 0";
}

TEST_F(PTDeviceModes, the_current_mode_is_the_first_when_the_sdk_does_not_answer) {
    ASSERT_EQ(Toupcam_put_eSize(device->sdkHandle(), 2), S_OK);
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, E_FAIL);
    EXPECT_EQ(device->getCurrentMode().id, "0");
}

TEST_F(PTDeviceModes, a_current_index_without_a_mode_is_an_empty_mode) {
    ASSERT_EQ(Toupcam_put_eSize(device->sdkHandle(), 2), S_OK);
    ToupcamSim_failCall("Toupcam_get_ResolutionNumber", 0, 1, 2);
    EXPECT_EQ(device->getCurrentMode(), PDeviceMode());
}

TEST_F(PTDeviceModes, setting_a_mode_selects_its_index_reads_back_and_logs) {
    EXPECT_TRUE(device->trySetMode({2000, 1500, u"2000x1500"_qs, "1", 24}));
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_put_eSize(h1, 1) = 0", "Toupcam_get_eSize(h1, 1) = 0",
                            "Toupcam_get_FinalSize(h1, 2000, 1500) = 0"));
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 2);
    EXPECT_THAT(records[0].items, ElementsAre(u"Try set mode:"_qs, u"2000"_qs, u"1500"_qs));
    EXPECT_EQ(records[0].line, 323);
    EXPECT_EQ(records[0].function, u"virtual bool PTDevice::trySetMode(const PDeviceMode &)"_qs);
    EXPECT_THAT(records[1].items, ElementsAre(u"Mode applied: eSize index"_qs, u"1"_qs,
                                              u"final size"_qs, u"2000"_qs, u"x"_qs, u"1500"_qs));
    EXPECT_EQ(records[1].line, 342);
    EXPECT_EQ(records[1].function, records[0].function);
}

TEST_F(PTDeviceModes, setting_a_mode_emits_nothing_by_itself) {
    QSignalSpy changed(device.get(), &PDevice::modeChanged);
    EXPECT_TRUE(device->trySetMode(modeWithId("1")));
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(PTDeviceModes, a_result_that_is_positive_is_a_success) {
    ToupcamSim_failCall("Toupcam_put_eSize", 0, 1, S_FALSE);
    EXPECT_TRUE(device->trySetMode(modeWithId("1")));
    EXPECT_TRUE(log.contains(u"Mode applied: eSize index 0 final size 4000 x 3000"_qs));
}

TEST_F(PTDeviceModes, a_rejected_index_is_logged_and_the_camera_keeps_its_resolution) {
    PDeviceMode mode{5, 6, u"5x6"_qs, "7", 24};
    EXPECT_FALSE(device->trySetMode(mode));
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 2);
    EXPECT_THAT(records[1].items, ElementsAre(u"Failed TOUPCAM_OP: Toupcam_put_eSize index"_qs,
                                              u"7"_qs, u"for"_qs, u"5"_qs, u"x"_qs, u"6"_qs));
    EXPECT_EQ(records[1].line, 331);
    EXPECT_EQ(device->getCurrentMode().id, "0");
}

TEST_F(PTDeviceModes, what_cannot_be_read_back_is_logged_as_zero) {
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, E_FAIL);
    ToupcamSim_failCall("Toupcam_get_FinalSize", 0, 1, E_FAIL);
    EXPECT_TRUE(device->trySetMode(modeWithId("2")));
    EXPECT_TRUE(log.contains(u"Mode applied: eSize index 0 final size 0 x 0"_qs));
}

struct IdRow {
    const char* name;
    const char* id;
    const char* call;
};

class PTDeviceModeId : public PTDeviceModes, public WithRow<IdRow> {};

ROW_TEST(PTDeviceModeId, selects) {
    device->trySetMode(modeWithId(GetParam().id));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_eSize"), ElementsAre(GetParam().call));
}

ROWS(Rows, PTDeviceModeId, IdRow{"an_empty_id_index_0", "", "Toupcam_put_eSize(h1, 0) = 0"},
     IdRow{"text_that_is_not_a_number_index_0", "big", "Toupcam_put_eSize(h1, 0) = 0"},
     IdRow{"a_number_that_index", "2", "Toupcam_put_eSize(h1, 2) = 0"},
     IdRow{"a_number_with_a_zero_before_it_a_decimal_index", "010",
           "Toupcam_put_eSize(h1, 10) = -2147024809"},
     IdRow{"a_hexadecimal_number_index_0", "0x2", "Toupcam_put_eSize(h1, 0) = 0"});

TEST_F(PTDeviceModes, of_two_modes_with_the_same_size_the_id_decides) {
    PDeviceMode a{4000, 3000, u"4000x3000"_qs, "1", 24};
    PDeviceMode b{4000, 3000, u"4000x3000"_qs, "2", 24};
    EXPECT_NE(a, b);
    EXPECT_TRUE(device->trySetMode(a));
    EXPECT_EQ(device->getCurrentMode().id, "1");
    EXPECT_TRUE(device->trySetMode(b));
    EXPECT_EQ(device->getCurrentMode().id, "2");
}

TEST_F(PTDeviceModes, the_mode_is_set_while_streaming_and_frames_come_in_the_new_size) {
    QList<long> widths;
    QObject::connect(device.get(), &PDevice::imageChanged,
                     [&](const PImage& image) { widths.append(image.width()); });
    ASSERT_TRUE(device->trySetMode(modeWithId("1")));
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return widths.contains(2000); }));
    SimJournal::clear();
    EXPECT_TRUE(device->trySetMode(modeWithId("2")));
    EXPECT_THAT(SimJournal::calls("Toupcam_Stop"), IsEmpty());
    EXPECT_THAT(SimJournal::calls("Toupcam_StartPushMode"), IsEmpty());
    EXPECT_TRUE(waitUntil([&] { return widths.contains(1000); }));
    EXPECT_TRUE(device->tryStopStream());
}
