// SPDX-License-Identifier: MIT
// The panel of the cooler, operated by the user.
#include <PTDevice/panels/PanelFixture.h>
#include <PTDevice/panels/SdkReadings.h>

#include <PCdPlugins/PTDevice/TECDATA.h>

#include <PGui/PDoubleRangeWidget.h>

#include <support/QtPrinters.h>

#include <QCheckBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTimer>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class PTTECPanel : public PanelFixture {
protected:
    void set(const TECDATA& d) { property("teccontrol")->setValue(QVariant::fromValue(d)); }
    TECDATA stored() const { return property("teccontrol")->valueInner().value<TECDATA>(); }
    void openTecPanel() {
        panel = openPanel("teccontrol");
        onOff = control<QCheckBox>(panel, "checkBox");
        target = control<PDoubleRangeWidget>(panel, "widget");
        timer = findPart<QTimer>(panel.get());
        SimJournal::clear();
    }
    QString textOfLabel(const char* name) const { return control<QLabel>(panel, name)->text(); }
    bool waitForTicks(int count) const {
        QSignalSpy ticks(timer, &QTimer::timeout);
        return waitUntil([&] { return ticks.size() >= count; });
    }

    std::unique_ptr<QWidget> panel;
    QCheckBox* onOff = nullptr;
    PDoubleRangeWidget* target = nullptr;
    QTimer* timer = nullptr;
};

} // namespace

TEST_F(PTTECPanel, opening_sends_the_stored_switch_and_target) {
    set({1, -105});
    SimJournal::clear();
    const auto opened = newPanel("teccontrol");
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 8, 1) = 0",
                                                 "Toupcam_put_Temperature(h1, -105) = 0"));
}

TEST_F(PTTECPanel, opens_with_the_value_and_30_degrees_either_way) {
    set({1, -105});
    openTecPanel();
    EXPECT_TRUE(onOff->isChecked());
    EXPECT_EQ(target->value(), -10.5);
    EXPECT_EQ(target->range(), (PMinMaxRange<double>{-30.0, 30.0, 0.1}));
}

TEST_F(PTTECPanel, the_switch_is_sent_at_once_and_again_with_the_value) {
    openTecPanel();
    timer->stop();
    clickOn(onOff);
    EXPECT_THAT(puts(),
                ElementsAre("Toupcam_put_Option(h1, 8, 1) = 0", "Toupcam_put_Option(h1, 8, 1) = 0",
                            "Toupcam_put_Temperature(h1, 150) = 0"));
    EXPECT_EQ(stored(), (TECDATA{1, 150}));
    clickOn(onOff);
    EXPECT_EQ(stored(), (TECDATA{0, 150}));
}

TEST_F(PTTECPanel, another_target_is_sent_once) {
    openTecPanel();
    enterNumber(target, u"-5"_qs);
    EXPECT_THAT(puts(), ElementsAre("Toupcam_put_Option(h1, 8, 0) = 0",
                                    "Toupcam_put_Temperature(h1, -50) = 0"));
    EXPECT_EQ(stored(), (TECDATA{0, -50}));
}

TEST_F(PTTECPanel, a_target_of_12_34_is_stored_as_123) {
    openTecPanel();
    target->setValue(12.34);
    EXPECT_EQ(stored().target, 123);
    EXPECT_EQ(target->value(), 12.3);
}

TEST_F(PTTECPanel, what_the_range_widget_emits_is_truncated_towards_zero) {
    openTecPanel();
    emit target->valueChanged(12.37);
    EXPECT_EQ(stored().target, 123);
    emit target->valueChanged(-12.37);
    EXPECT_EQ(stored().target, -123);
}

TEST_F(PTTECPanel, every_tenth_of_a_degree_is_stored_as_it_is_shown) {
    openTecPanel();
    timer->stop();
    for (int tenths = -300; tenths <= 300; ++tenths) {
        target->setValue(tenths / 10.0);
        ASSERT_EQ(stored().target, tenths);
        ASSERT_EQ(target->value(), tenths / 10.0);
    }
}

TEST_F(PTTECPanel, the_target_it_already_shows_writes_nothing) {
    set({0, 123});
    openTecPanel();
    enterNumber(target, u"12.3"_qs);
    target->setValue(12.3);
    emit target->valueChanged(12.3);
    EXPECT_THAT(puts(), IsEmpty());
}

TEST_F(PTTECPanel, follows_another_target_without_writing) {
    openTecPanel();
    set({0, -123});
    EXPECT_EQ(target->value(), -12.3);
    EXPECT_EQ(puts().size(), 2U); // those of the code that set it
}

TEST_F(PTTECPanel, follows_the_switch_and_sends_it_once_more) {
    openTecPanel();
    set({1, 150});
    EXPECT_TRUE(onOff->isChecked());
    EXPECT_EQ(puts().size(), 5U); // two of the code that set it, three of the box
    EXPECT_EQ(stored(), (TECDATA{1, 150}));
}

TEST_F(PTTECPanel, a_target_beyond_its_range_is_shown_and_left_alone) {
    openTecPanel();
    set({0, -450});
    EXPECT_EQ(target->value(), -45.0);
    EXPECT_EQ(stored(), (TECDATA{0, -450}));
    EXPECT_EQ(puts().size(), 2U);
}

TEST_F(PTTECPanel, opened_with_a_target_beyond_its_range_it_shows_it) {
    set({0, -450});
    openTecPanel();
    EXPECT_EQ(target->value(), -45.0);
    EXPECT_EQ(stored(), (TECDATA{0, -450}));
}

TEST_F(PTTECPanel, a_refused_target_is_taken_back) {
    openTecPanel();
    ToupcamSim_failCall("Toupcam_put_Temperature", 0, 1, E_FAIL);
    enterNumber(target, u"5"_qs);
    EXPECT_EQ(stored(), (TECDATA{0, 150}));
    EXPECT_EQ(target->value(), 15.0);
}

// ---- The readings.

TEST_F(PTTECPanel, readings_are_refreshed_every_100_ms_again_and_again) {
    openTecPanel();
    EXPECT_EQ(timer->parent(), panel.get());
    EXPECT_EQ(timer->interval(), 100);
    EXPECT_FALSE(timer->isSingleShot());
    EXPECT_TRUE(waitForTicks(3));
}

TEST_F(PTTECPanel, a_refresh_reads_temperature_voltage_and_highest_voltage) {
    openTecPanel();
    SimJournal::clear();
    QTimerEvent tick(timer->timerId());
    QCoreApplication::sendEvent(timer, &tick);
    EXPECT_THAT(SimJournal::lines(), ElementsAre(StartsWith("Toupcam_get_Temperature(h1, "),
                                                 StartsWith("Toupcam_get_Option(h1, 32, "),
                                                 StartsWith("Toupcam_get_Option(h1, 33, ")));
}

TEST_F(PTTECPanel, readings_have_three_digits) {
    const SdkReadings readings(-123, 125, 240);
    openTecPanel();
    ASSERT_TRUE(waitForTicks(1));
    EXPECT_EQ(textOfLabel("tecVoltage"), u"12.5/24 (current/max)"_qs);
    EXPECT_EQ(textOfLabel("temp"), u"-12.3"_qs);
}

TEST_F(PTTECPanel, readings_of_more_digits_are_rounded_to_three) {
    const SdkReadings readings(1006, 1234, 0);
    openTecPanel();
    ASSERT_TRUE(waitForTicks(1));
    EXPECT_EQ(textOfLabel("tecVoltage"), u"123/0 (current/max)"_qs);
    EXPECT_EQ(textOfLabel("temp"), u"101"_qs);
}

TEST_F(PTTECPanel, readings_that_fail_are_zero) {
    openTecPanel();
    ToupcamSim_failCall("Toupcam_get_Temperature", 0, 0, E_FAIL);
    ToupcamSim_failCall("Toupcam_get_Option", 0, 0, E_FAIL);
    ASSERT_TRUE(waitForTicks(2));
    EXPECT_EQ(textOfLabel("tecVoltage"), u"0/0 (current/max)"_qs);
    EXPECT_EQ(textOfLabel("temp"), u"0"_qs);
}

TEST_F(PTTECPanel, the_refresh_stops_for_good_when_the_device_is_unlinked) {
    ASSERT_TRUE(device->link().isOk());
    openTecPanel();
    ASSERT_TRUE(waitForTicks(1));
    const QString last = textOfLabel("tecVoltage");
    device->unlink();
    EXPECT_FALSE(timer->isActive());
    ASSERT_TRUE(device->link().isOk());
    EXPECT_FALSE(timer->isActive());
    EXPECT_EQ(textOfLabel("tecVoltage"), last);
}

// ---- Destruction.

TEST_F(PTTECPanel, destroyed_before_the_property_it_is_left_alone) {
    openTecPanel();
    panel.reset();
    set({1, 20});
    EXPECT_EQ(stored(), (TECDATA{1, 20}));
    ASSERT_TRUE(device->link().isOk());
    device->unlink(); // there is no longer a timer to stop
}

TEST_F(PTTECPanel, after_the_end_of_its_camera_it_sends_nothing) {
    openTecPanel();
    device.reset();
    SimJournal::clear();
    clickOn(onOff);
    enterNumber(target, u"2"_qs);
    ASSERT_TRUE(waitForTicks(2));
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}
