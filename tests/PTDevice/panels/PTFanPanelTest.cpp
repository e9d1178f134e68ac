// SPDX-License-Identifier: MIT
// The panel of the fan, operated by the user.
#include <PTDevice/panels/PanelFixture.h>

#include <PCdPlugins/PTDevice/FANDATA.h>

#include <PGui/PRangeWidget.h>

#include <support/QtPrinters.h>

#include <QCheckBox>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PTFanPanel : public PanelFixture {
protected:
    void set(const FANDATA& d) { property("fan")->setValue(QVariant::fromValue(d)); }
    FANDATA stored() const { return property("fan")->valueInner().value<FANDATA>(); }
    void openFanPanel() {
        panel = openPanel("fan");
        onOff = control<QCheckBox>(panel, "fanOnOff");
        range = control<PRangeWidget>(panel, "range");
    }

    std::unique_ptr<QWidget> panel;
    QCheckBox* onOff = nullptr;
    PRangeWidget* range = nullptr;
};

} // namespace

TEST_F(PTFanPanel, opens_with_the_value_and_the_cameras_highest_speed) {
    set({1, 3});
    SimJournal::clear();
    openFanPanel();
    EXPECT_TRUE(onOff->isChecked());
    EXPECT_EQ(range->value(), 3);
    EXPECT_EQ(range->range(), (PMinMaxRange<int>{0, 5, 1}));
}

TEST_F(PTFanPanel, opening_reads_the_highest_speed_once_and_nothing_else) {
    SimJournal::clear();
    const auto opened = newPanel("fan");
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_get_FanMaxSpeed(h1) = 5"));
}

TEST_F(PTFanPanel, a_fan_that_cannot_be_read_is_shown_unchecked) {
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_FAN, 0, 1, E_FAIL);
    property("fan")->updateValueFromDevice();
    ASSERT_EQ(stored(), (FANDATA{-1, 0}));
    openFanPanel();
    EXPECT_FALSE(onOff->isChecked());
}

TEST_F(PTFanPanel, a_fan_at_speed_1_becomes_checked) {
    openFanPanel();
    ToupcamSim_answerOption(TOUPCAM_OPTION_FAN, 1);
    property("fan")->updateValueFromDevice();
    EXPECT_EQ(stored(), (FANDATA{1, 1}));
    EXPECT_TRUE(onOff->isChecked());
    EXPECT_EQ(range->value(), 1);
}

TEST_F(PTFanPanel, a_fan_whose_speed_reads_as_less_than_0_is_off) {
    set({1, 3});
    openFanPanel();
    ToupcamSim_answerOption(TOUPCAM_OPTION_FAN, -1);
    property("fan")->updateValueFromDevice();
    EXPECT_EQ(stored(), (FANDATA{0, -1}));
    EXPECT_FALSE(onOff->isChecked());
    EXPECT_EQ(range->value(), 0);
}

TEST_F(PTFanPanel, any_other_number_than_0_means_on) {
    set({2, 3});
    openFanPanel();
    EXPECT_TRUE(onOff->isChecked());
    set({-1, 3});
    EXPECT_FALSE(onOff->isChecked()) << "it is not known whether it is on";
    set({2, 3});
    EXPECT_TRUE(onOff->isChecked());
}

TEST_F(PTFanPanel, a_fan_that_can_no_longer_be_read_becomes_unchecked) {
    set({1, 3});
    openFanPanel();
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_FAN, 0, 1, E_FAIL);
    property("fan")->updateValueFromDevice();
    EXPECT_FALSE(onOff->isChecked());
    EXPECT_THAT(puts(), IsEmpty());
}

TEST_F(PTFanPanel, checking_sends_the_speed_once) {
    set({0, 4});
    openFanPanel();
    clickOn(onOff);
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 4) = 0"));
    EXPECT_EQ(stored(), (FANDATA{1, 4}));
}

TEST_F(PTFanPanel, unchecking_sends_0_once_and_keeps_the_speed) {
    set({1, 4});
    openFanPanel();
    clickOn(onOff);
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 0) = 0"));
    EXPECT_EQ(stored(), (FANDATA{0, 4}));
    EXPECT_EQ(range->value(), 4);
}

TEST_F(PTFanPanel, another_speed_is_sent_once) {
    set({1, 4});
    openFanPanel();
    enterNumber(range, u"2"_qs);
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 2) = 0"));
    EXPECT_EQ(stored(), (FANDATA{1, 2}));
}

TEST_F(PTFanPanel, a_speed_chosen_while_unchecked_is_stored_and_switches_the_fan_off) {
    openFanPanel();
    QTest::keyClick(findPart<PRangeSlider>(range), Qt::Key_Right);
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 0) = 0"));
    EXPECT_EQ(stored(), (FANDATA{0, 1}));
    EXPECT_FALSE(onOff->isChecked());
}

TEST_F(PTFanPanel, follows_the_property_without_writing) {
    openFanPanel();
    set({1, 5});
    EXPECT_TRUE(onOff->isChecked());
    EXPECT_EQ(range->value(), 5);
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 5) = 0"));
}

TEST_F(PTFanPanel, two_panels_follow_each_other) {
    openFanPanel();
    const auto second = newPanel("fan");
    clickOn(onOff);
    enterNumber(range, u"3"_qs);
    EXPECT_TRUE(control<QCheckBox>(second, "fanOnOff")->isChecked());
    EXPECT_EQ(control<PRangeWidget>(second, "range")->value(), 3);
    EXPECT_EQ(puts().size(), 2U);
}

TEST_F(PTFanPanel, a_refused_speed_stays_on_the_panel_and_is_logged) {
    set({1, 1});
    openFanPanel();
    ToupcamSim_failCall("Toupcam_put_Option", 0, 1, E_FAIL);
    enterNumber(range, u"2"_qs);
    EXPECT_EQ(range->value(), 2);
    EXPECT_EQ(ptTexts(log).size(), 1);
}

TEST_F(PTFanPanel, destroyed_before_the_property_it_is_left_alone) {
    openFanPanel();
    panel.reset();
    set({1, 2});
    EXPECT_EQ(stored(), (FANDATA{1, 2}));
}

TEST_F(PTFanPanel, after_the_end_of_its_camera_it_sends_nothing) {
    openFanPanel();
    device.reset();
    SimJournal::clear();
    clickOn(onOff);
    enterNumber(range, u"2"_qs);
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}
