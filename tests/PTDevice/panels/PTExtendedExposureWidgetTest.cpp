// SPDX-License-Identifier: MIT
// The exposure panel: what it shows and enables, what an edit sends, how it follows the property.
#include <PTDevice/panels/ExposurePanelFixture.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class PTExtendedExposurePanel : public ExposurePanelFixture {};

ExtendedExposureData manualRecord() {
    ExtendedExposureData d;
    d.autoexpenabled = false;
    d.target = 77;
    d.gain = 222;
    d.exp = 12.34;
    return d;
}

/// Every field differs from the default.
ExtendedExposureData otherRecord() {
    ExtendedExposureData d = manualRecord();
    d.minutes = 1;
    d.seconds = 2;
    d.milliseconds = 3;
    d.microseconds = 4;
    d.spincount = 17;
    d.triggermode = ExtendedExposureData::ExternalTrigger;
    d.capturemode = ExtendedExposureData::Trigger;
    return d;
}

} // namespace

// ---- The initial state.

TEST_F(PTExtendedExposurePanel, opens_with_what_the_camera_has_and_writes_nothing) {
    set(manualRecord());
    Toupcam_put_ExpoTime(device->sdkHandle(), 45670);
    SimJournal::clear();
    panel = newPanel("extexposure");
    EXPECT_THAT(SimJournal::lines(), SizeIs(4));
    EXPECT_THAT(puts(), IsEmpty());
    EXPECT_FALSE(automatic()->isChecked());
    EXPECT_EQ(target()->value(), 77);
    EXPECT_EQ(gain()->value(), 222);
    EXPECT_EQ(time()->value(), 45.67);
    EXPECT_EQ(page(), 0);
    EXPECT_TRUE(button("pbVideo")->isChecked());
}

TEST_F(PTExtendedExposurePanel, opens_with_the_stored_trigger_settings) {
    openWith(otherRecord());
    EXPECT_EQ(page(), 1);
    EXPECT_TRUE(button("pbTrigger")->isChecked());
    EXPECT_FALSE(button("pbVideo")->isChecked());
    EXPECT_EQ(triggerMode()->currentIndex(), 1);
    EXPECT_EQ(box("sM")->value(), 1);
    EXPECT_EQ(box("sSec")->value(), 2);
    EXPECT_EQ(box("sMS")->value(), 3);
    EXPECT_EQ(box("sUS")->value(), 4);
    EXPECT_EQ(box("spincount")->value(), 17);
}

TEST_F(PTExtendedExposurePanel, an_unknown_capture_mode_opens_on_video) {
    ExtendedExposureData d;
    d.capturemode = 5;
    openWith(d);
    EXPECT_EQ(page(), 0);
}

TEST_F(PTExtendedExposurePanel, the_ranges_are_the_cameras) {
    openCamera(fullCamera()
                   .set("exposure", R"({"min": 100, "max": 2000000})")
                   .set("gain", R"({"max": 300})"));
    panel = openPanel("extexposure");
    EXPECT_EQ(target()->range(), (PMinMaxRange<int>{10, 230, 1}));
    EXPECT_EQ(gain()->range(), (PMinMaxRange<int>{100, 300, 1}));
    EXPECT_EQ(time()->range(), (PMinMaxRange<double>{0.1, 2000.0, 0.01}));
}

TEST_F(PTExtendedExposurePanel, a_camera_that_can_expose_for_10_s_is_offered_5_s) {
    openCamera(fullCamera().set("exposure", R"({"max": 10000000})"));
    panel = openPanel("extexposure");
    EXPECT_EQ(time()->range().maximum, 5000.0);
}

TEST_F(PTExtendedExposurePanel, ranges_that_could_not_be_read_are_0_to_0) {
    device.reset();
    loadScene({fullCamera()});
    device = open();
    ToupcamSim_failCall("Toupcam_get_ExpTimeRange", 0, 1, E_FAIL);
    ToupcamSim_failCall("Toupcam_get_ExpoAGainRange", 0, 1, E_FAIL);
    device->supportProperties();
    panel = openPanel("extexposure");
    EXPECT_EQ(time()->range(), (PMinMaxRange<double>{0, 0, 0.01}));
    EXPECT_EQ(gain()->range(), (PMinMaxRange<int>{0, 0, 1}));
}

TEST_F(PTExtendedExposurePanel, a_camera_without_software_trigger_has_its_page_disabled) {
    openCamera(fullCamera().withFlags(R"(["USB30", "TRIGGER_EXTERNAL"])"));
    panel = openPanel("extexposure");
    EXPECT_FALSE(button("pbTrigger")->isEnabled());
    EXPECT_FALSE(control<QWidget>(panel, "page_2")->isEnabled());
    clickOn(button("pbTrigger"));
    EXPECT_EQ(page(), 0);
    EXPECT_THAT(puts(), IsEmpty());
}

TEST_F(PTExtendedExposurePanel, a_trigger_page_that_cannot_be_chosen_looks_so_and_says_why) {
    openCamera(fullCamera());
    panel = openPanel("extexposure");
    EXPECT_EQ(button("pbTrigger")->toolTip(), QString());
    const QImage usable = button("pbTrigger")->grab().toImage();

    panel.reset();
    openCamera(fullCamera().withFlags(R"(["USB30", "TRIGGER_EXTERNAL"])"));
    panel = openPanel("extexposure");
    EXPECT_EQ(button("pbTrigger")->toolTip(), u"This camera cannot be triggered by software."_qs);
    EXPECT_EQ(button("pbTrigger")->size(), usable.size());
    EXPECT_NE(button("pbTrigger")->grab().toImage(), usable);
}

TEST_F(PTExtendedExposurePanel, a_camera_with_software_trigger_has_its_page_enabled) {
    openCamera(fullCamera().withFlags(R"("0x80000")"));
    panel = openPanel("extexposure");
    EXPECT_TRUE(button("pbTrigger")->isEnabled());
    EXPECT_TRUE(control<QWidget>(panel, "page_2")->isEnabled());
}

// ---- Which controls are enabled.

namespace {

const std::vector<const char*> videoControls{"exposureTarget", "exposureTime", "exposureGain"};
const std::vector<const char*> runControls{"pbRunOnce", "pbSequence", "pbRepeatMode"};

} // namespace

TEST_F(PTExtendedExposurePanel, automatic_exposure_enables_the_target) {
    openWith(ExtendedExposureData());
    EXPECT_THAT(usable(videoControls), ElementsAre("exposureTarget"));
}

TEST_F(PTExtendedExposurePanel, manual_exposure_enables_time_and_gain) {
    openWith(ExtendedExposureData());
    clickOn(automatic());
    EXPECT_THAT(usable(videoControls), ElementsAre("exposureTime", "exposureGain"));
    clickOn(automatic());
    EXPECT_THAT(usable(videoControls), ElementsAre("exposureTarget"));
}

TEST_F(PTExtendedExposurePanel, a_software_trigger_can_run_in_all_three_ways) {
    openWith(triggerRecord());
    EXPECT_THAT(usable(runControls), ElementsAre("pbRunOnce", "pbSequence", "pbRepeatMode"));
}

TEST_F(PTExtendedExposurePanel, an_external_trigger_can_run_sequences_only) {
    openWith(triggerRecord());
    QTest::keyClick(triggerMode(), Qt::Key_Down);
    ASSERT_EQ(triggerMode()->currentText(), u"External"_qs);
    EXPECT_THAT(usable(runControls), ElementsAre("pbSequence"));
    QTest::keyClick(triggerMode(), Qt::Key_Up);
    EXPECT_THAT(usable(runControls), ElementsAre("pbRunOnce", "pbSequence", "pbRepeatMode"));
}

TEST_F(PTExtendedExposurePanel, an_unknown_trigger_can_run_in_all_three_ways) {
    ExtendedExposureData d = triggerRecord();
    d.triggermode = 7;
    openWith(d);
    EXPECT_EQ(triggerMode()->currentIndex(), -1);
    EXPECT_THAT(usable(runControls), SizeIs(3));
}

// ---- What an edit sends.

TEST_F(PTExtendedExposurePanel, another_target_sends_the_whole_record_once) {
    openWith(ExtendedExposureData());
    enterNumber(target(), u"150"_qs);
    EXPECT_THAT(puts(), ElementsAre("Toupcam_put_Option(h1, 11, 0) = 0",
                                    "Toupcam_put_AutoExpoEnable(h1, 1) = 0",
                                    "Toupcam_put_AutoExpoTarget(h1, 150) = 0",
                                    "Toupcam_put_ExpoTime(h1, 1000) = 0",
                                    "Toupcam_put_ExpoAGain(h1, 120) = 0"));
    EXPECT_EQ(stored().target, 150);
}

TEST_F(PTExtendedExposurePanel, another_time_sends_the_whole_record_once) {
    openWith(manualRecord());
    enterNumber(time(), u"250.5"_qs);
    EXPECT_THAT(puts(), SizeIs(5));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_ExpoTime"),
                ElementsAre("Toupcam_put_ExpoTime(h1, 250500) = 0"));
}

TEST_F(PTExtendedExposurePanel, another_gain_sends_the_whole_record_once) {
    openWith(manualRecord());
    QTest::keyClick(findPart<PRangeSlider>(gain()), Qt::Key_Right);
    EXPECT_THAT(puts(), SizeIs(5));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_ExpoAGain"),
                ElementsAre("Toupcam_put_ExpoAGain(h1, 223) = 0"));
}

TEST_F(PTExtendedExposurePanel, automatic_exposure_sends_the_whole_record_once) {
    openWith(manualRecord());
    clickOn(automatic());
    EXPECT_THAT(puts(), SizeIs(5));
    EXPECT_TRUE(stored().autoexpenabled);
}

TEST_F(PTExtendedExposurePanel, every_step_of_a_drag_is_sent) {
    openWith(manualRecord());
    for (int step = 0; step < 10; ++step)
        QTest::keyClick(findPart<PRangeSlider>(gain()), Qt::Key_Left);
    EXPECT_THAT(puts(), SizeIs(50));
    EXPECT_EQ(stored().gain, 212);
}

TEST_F(PTExtendedExposurePanel, the_trigger_page_is_sent_by_both_buttons) {
    openWith(ExtendedExposureData());
    clickOn(button("pbTrigger"));
    EXPECT_EQ(page(), 1);
    // One button is released, the other pressed: two edits, both with the trigger mode.
    EXPECT_THAT(
        SimJournal::calls("Toupcam_put_Option"),
        ElementsAre("Toupcam_put_Option(h1, 11, 1) = 0", "Toupcam_put_Option(h1, 11, 1) = 0"));
    EXPECT_THAT(puts(), SizeIs(6));
    EXPECT_EQ(stored().capturemode, 1);
}

TEST_F(PTExtendedExposurePanel, a_value_is_shown_whole_whatever_arrives_while_it_is_written_back) {
    openWith(ExtendedExposureData());
    const auto announce = [this](int target, int gain) {
        ExtendedExposureData d;
        d.target = quint16(target);
        d.gain = quint16(gain);
        emit exposure()->PDeviceProperty::valueChanged(QVariant::fromValue(d));
    };
    QObject::connect(gain(), &PRangeWidget::valueChanged, panel.get(), [&] { announce(50, 200); });
    announce(150, 200);
    EXPECT_EQ(target()->value(), 150);
    EXPECT_EQ(gain()->value(), 200);
}

TEST_F(PTExtendedExposurePanel, the_page_follows_the_buttons_before_the_property_answers) {
    openWith(ExtendedExposureData());
    exposure()->blockSignals(true);
    clickOn(button("pbTrigger"));
    EXPECT_EQ(page(), 1);
    clickOn(button("pbVideo"));
    EXPECT_EQ(page(), 0);
}

TEST_F(PTExtendedExposurePanel, the_video_page_is_sent_by_both_buttons) {
    openWith(triggerRecord());
    clickOn(button("pbVideo"));
    EXPECT_EQ(page(), 0);
    EXPECT_THAT(
        SimJournal::calls("Toupcam_put_Option"),
        ElementsAre("Toupcam_put_Option(h1, 11, 0) = 0", "Toupcam_put_Option(h1, 11, 0) = 0"));
    EXPECT_THAT(puts(), SizeIs(10));
    EXPECT_EQ(stored().capturemode, 0);
}

TEST_F(PTExtendedExposurePanel, the_page_that_is_shown_sends_nothing_when_clicked) {
    openWith(triggerRecord());
    clickOn(button("pbTrigger"));
    EXPECT_THAT(puts(), IsEmpty());
}

TEST_F(PTExtendedExposurePanel, another_trigger_sends_the_whole_record_once) {
    openWith(triggerRecord());
    QTest::keyClick(triggerMode(), Qt::Key_Down);
    EXPECT_THAT(puts(), ElementsAre("Toupcam_put_AutoExpoEnable(h1, 0) = 0",
                                    "Toupcam_put_ExpoTime(h1, 1000) = 0",
                                    "Toupcam_put_Option(h1, 11, 2) = 0"));
}

namespace {

struct BoxRow {
    const char* name;
    qint32 ExtendedExposureData::*field;
    int microseconds; ///< added by one step
};

class PTExtendedExposureBox : public PTExtendedExposurePanel, public WithRow<BoxRow> {};

} // namespace

ROW_TEST(PTExtendedExposureBox, sends_the_whole_record_once_for_a_step) {
    openWith(triggerRecord());
    ExtendedExposureData d = stored();
    QTest::keyClick(box(GetParam().name), Qt::Key_Up);
    ++(d.*GetParam().field);
    EXPECT_EQ(stored(), d);
    EXPECT_THAT(puts(), SizeIs(3));
    const std::string time = std::to_string(1000 + GetParam().microseconds);
    const bool tooLong = GetParam().microseconds > 15'000'000;
    EXPECT_THAT(
        SimJournal::calls("Toupcam_put_ExpoTime"),
        ElementsAre("Toupcam_put_ExpoTime(h1, " + time + (tooLong ? ") = -2147024809" : ") = 0")));
}

ROW_TEST(PTExtendedExposureBox, sends_every_number_on_the_way_while_one_is_typed) {
    openWith(triggerRecord());
    QSpinBox* const typed = box(GetParam().name);
    typed->setFocus();
    typed->selectAll();
    QTest::keyClicks(typed, u"25"_qs);
    EXPECT_EQ(stored().*GetParam().field, 25);
    EXPECT_THAT(puts(), SizeIs(6)); // 2, then 25
}

ROWS(Rows, PTExtendedExposureBox, BoxRow{"sM", &ExtendedExposureData::minutes, 60'000'000},
     BoxRow{"sSec", &ExtendedExposureData::seconds, 1'000'000},
     BoxRow{"sMS", &ExtendedExposureData::milliseconds, 1000},
     BoxRow{"sUS", &ExtendedExposureData::microseconds, 1},
     BoxRow{"spincount", &ExtendedExposureData::spincount, 0});

// ---- Following the property.

TEST_F(PTExtendedExposurePanel, turns_to_the_page_before_it_shows_the_trigger) {
    openWith(ExtendedExposureData());
    const QObject context;
    int pageWithTrigger = -1;
    QObject::connect(triggerMode(), &QComboBox::currentIndexChanged, &context,
                     [&] { pageWithTrigger = page(); });
    set(otherRecord());
    EXPECT_EQ(pageWithTrigger, ExtendedExposureData::Trigger);
}

TEST_F(PTExtendedExposurePanel, follows_what_other_code_sets_in_every_field) {
    openWith(ExtendedExposureData());
    set(otherRecord());
    EXPECT_FALSE(automatic()->isChecked());
    EXPECT_EQ(target()->value(), 77);
    EXPECT_EQ(gain()->value(), 222);
    EXPECT_EQ(time()->value(), 12.34);
    EXPECT_EQ(page(), 1);
    EXPECT_TRUE(button("pbTrigger")->isChecked());
    EXPECT_EQ(triggerMode()->currentIndex(), 1);
    EXPECT_EQ(box("sM")->value(), 1);
    EXPECT_EQ(box("sSec")->value(), 2);
    EXPECT_EQ(box("sMS")->value(), 3);
    EXPECT_EQ(box("sUS")->value(), 4);
    EXPECT_EQ(box("spincount")->value(), 17);
    EXPECT_THAT(usable(videoControls), ElementsAre("exposureTime", "exposureGain"));
    EXPECT_EQ(stored(), otherRecord());
}

TEST_F(PTExtendedExposurePanel, each_control_that_follows_writes_once_more_and_no_loop_begins) {
    openWith(manualRecord());
    ExtendedExposureData d = manualRecord();
    d.target = 90;
    set(d);
    EXPECT_THAT(puts(), SizeIs(2 * 5));
    SimJournal::clear();
    d.gain = 300;
    d.exp = 20;
    set(d);
    EXPECT_THAT(puts(), SizeIs(3 * 5));
    EXPECT_EQ(stored(), d);
    SimJournal::clear();
    set(d);
    EXPECT_THAT(puts(), SizeIs(5));
}

TEST_F(PTExtendedExposurePanel, two_panels_agree_in_the_end) {
    openWith(ExtendedExposureData());
    const auto second = newPanel("extexposure");
    clickOn(automatic());
    enterNumber(time(), u"33"_qs);
    EXPECT_FALSE(control<QCheckBox>(second, "cbAutoExposure")->isChecked());
    EXPECT_EQ(control<PDoubleRangeWidget>(second, "exposureTime")->value(), 33.0);
    EXPECT_EQ(stored().exp, 33.0);
    EXPECT_EQ(time()->value(), 33.0);
}

TEST_F(PTExtendedExposurePanel, a_value_of_another_type_is_shown_as_the_default) {
    openWith(manualRecord());
    property("extexposure")->setValue(u"bright"_qs);
    EXPECT_TRUE(automatic()->isChecked());
    EXPECT_EQ(target()->value(), 100);
    EXPECT_EQ(gain()->value(), 120);
}
