// SPDX-License-Identifier: MIT
// What the plugin and its panels do with a setting that the camera does not report. Here the calls
// of the SDK go through PTSdk.cpp, which reports failed readings.
#include <PTDevice/panels/ExposurePanelFixture.h>

#include <PCdPlugins/PTDevice/FANDATA.h>
#include <PCdPlugins/PTDevice/PTProps.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QRadioButton>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const bool isSdkNamed = qputenv("TOUPCAM_LIBRARY", SDK_LIBRARY); // before the first call

class UnreadSettings : public ExposurePanelFixture {
protected:
    QRadioButton* radio(const char* name) const { return control<QRadioButton>(panel, name); }
    /// The captions of the checked buttons.
    QStringList checked() const {
        QStringList texts;
        for (const QRadioButton* one : panel->findChildren<QRadioButton*>()) {
            if (one->isChecked())
                texts.append(one->text());
        }
        return texts;
    }
};

} // namespace

TEST_F(UnreadSettings, are_noticed_where_the_plugin_calls_the_sdk) {
    ASSERT_TRUE(isSdkNamed);
    ToupcamSim_failCall("Toupcam_get_Hue", 0, 1, E_FAIL);
    property("hue")->setValue(3);
    EXPECT_TRUE(property("hue")->isUnread());
    ToupcamSim_failCall("Toupcam_get_Hue", 0, 1, E_NOTIMPL);
    property("hue")->setValue(3);
    EXPECT_FALSE(property("hue")->isUnread()) << "the camera lacks it";
}

TEST_F(UnreadSettings, have_the_region_if_it_is_not_reported_after_a_change_of_the_mode) {
    PDeviceProperty* const roi = property("roi");
    const QVariant before = roi->valueInner();
    ASSERT_TRUE(before.isValid());
    QVariant announced = before;
    QObject::connect(roi, &PDeviceProperty::valueChanged, roi,
                     [&](const QVariant& value) { announced = value; });
    ToupcamSim_failCall("Toupcam_get_Roi", 0, 1, E_FAIL);
    ASSERT_TRUE(device->setMode(device->getSupportModes().value(0)).isOk());
    EXPECT_TRUE(roi->isUnread());
    EXPECT_FALSE(roi->valueInner().isValid());
    EXPECT_FALSE(roi->reportedValue().isValid()) << "the old mode's region";
    EXPECT_FALSE(announced.isValid()) << "panels show it no longer";
    roi->updateValueFromDevice();
    EXPECT_FALSE(roi->isUnread());
    EXPECT_EQ(roi->valueInner(), before);
    EXPECT_EQ(announced, before) << "and again";
}

TEST_F(UnreadSettings, have_the_colour_if_it_is_not_reported_after_a_white_balance) {
    PDeviceProperty* const tint = property("tint");
    ASSERT_TRUE(tint->valueInner().isValid());
    QVariant announced = tint->valueInner();
    QObject::connect(tint, &PDeviceProperty::valueChanged, tint,
                     [&](const QVariant& value) { announced = value; });
    ToupcamSim_failCall("Toupcam_get_TempTint", 0, 2, E_FAIL);
    cbWbOnce(7000, 1200, device.get());
    for (const char* const id : {"tint", "temp"})
        ASSERT_TRUE(waitUntil([&] { return property(id)->isUnread(); })) << id;
    EXPECT_FALSE(announced.isValid()) << "panels show it no longer";
    tint->updateValueFromDevice();
    EXPECT_EQ(announced, tint->reportedValue()) << "and again";
    EXPECT_TRUE(announced.isValid());
}

TEST_F(UnreadSettings, a_fan_that_cannot_be_read_is_stored_like_that_and_marked) {
    property("fan")->setValue(QVariant::fromValue(FANDATA{1, 4}));
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_FAN, 0, 1, E_FAIL);
    property("fan")->updateValueFromDevice();
    EXPECT_EQ(property("fan")->valueInner(), QVariant::fromValue(FANDATA{-1, 0}));
    EXPECT_TRUE(property("fan")->isUnread());
    EXPECT_EQ(property("fan")->reportedValue(), QVariant::fromValue(FANDATA{1, 4}));
    property("fan")->updateValueFromDevice();
    EXPECT_EQ(property("fan")->valueInner(), QVariant::fromValue(FANDATA{1, 4}));
    EXPECT_FALSE(property("fan")->isUnread());
}

TEST_F(UnreadSettings, a_fan_that_cannot_be_read_at_first_is_stored_like_that) {
    loadScene({fullCamera()});
    device = open();
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_FAN, 0, 1, E_FAIL);
    device->supportProperties();
    EXPECT_EQ(property("fan")->valueInner(), QVariant::fromValue(FANDATA{-1, 0}));
    EXPECT_TRUE(property("fan")->isUnread());
    EXPECT_FALSE(property("fan")->reportedValue().isValid());
}

TEST_F(UnreadSettings, exposure_fields_that_cannot_be_read_are_stored_as_0_and_marked) {
    ExtendedExposureData d;
    d.minutes = 1;
    d.autoexpenabled = false;
    d.exp = 12.5;
    d.gain = 150;
    exposure()->setValue(QVariant::fromValue(d));
    ToupcamSim_failCall("Toupcam_get_ExpoTime", 0, 1, E_FAIL);
    exposure()->updateValueFromDevice();
    EXPECT_TRUE(exposure()->isUnread());
    EXPECT_EQ(exposure()->value().exp, 0);
    EXPECT_EQ(exposure()->value().gain, 150);
    EXPECT_EQ(exposure()->value().minutes, 1);
    EXPECT_EQ(exposure()->reportedValue().value<ExtendedExposureData>().exp, 12.5);
    exposure()->updateValueFromDevice();
    EXPECT_FALSE(exposure()->isUnread());
    EXPECT_EQ(exposure()->value().exp, 12.5);
}

TEST_F(UnreadSettings, an_exposure_is_marked_too_if_the_plugin_reads_for_itself) {
    ToupcamSim_failCall("Toupcam_get_ExpoAGain", 0, 1, E_FAIL);
    EXPECT_EQ(exposure()->tryGetValueFromDevice().gain, 0);
    EXPECT_EQ(exposure()->value().gain, 0);
    EXPECT_TRUE(exposure()->isUnread());
    exposure()->tryGetValueFromDevice();
    EXPECT_FALSE(exposure()->isUnread());
}

TEST_F(UnreadSettings, of_an_exposure_what_cannot_be_read_is_not_shown_and_so_not_sent) {
    ExtendedExposureData video;
    video.autoexpenabled = false;
    video.exp = 20;
    openWith(video);
    SimJournal::clear();
    ToupcamSim_failCall("Toupcam_get_ExpoTime", 0, 1, E_FAIL);
    exposure()->updateValueFromDevice();
    EXPECT_TRUE(exposure()->isUnread());
    EXPECT_EQ(time()->value(), 20);
    exposure()->updateValueFromDevice();
    EXPECT_EQ(stored().exp, 20);
    EXPECT_EQ(puts(), std::vector<std::string>());
}

TEST_F(UnreadSettings,
       a_light_code_that_cannot_be_read_back_is_not_shown_and_no_other_one_is_sent) {
    panel = openPanel("backlight");
    ToupcamSim_failCall("Toupcam_get_HZ", 0, 1, E_FAIL);
    clickOn(radio("hz50"));
    EXPECT_THAT(puts(), ElementsAre("Toupcam_put_HZ(h1, 1) = 0"));
    EXPECT_THAT(checked(), IsEmpty());
    property("backlight")->updateValueFromDevice();
    EXPECT_EQ(checked(), QStringList{u"60 Hz"_qs});
}

TEST_F(UnreadSettings, a_light_panel_opened_before_its_code_was_read_it_leaves_all_unchecked) {
    ToupcamSim_failCall("Toupcam_get_HZ", 0, 1, E_FAIL);
    property("backlight")->setValue(0);
    ASSERT_TRUE(property("backlight")->isUnread());
    panel = openPanel("backlight");
    EXPECT_THAT(checked(), IsEmpty());
}
