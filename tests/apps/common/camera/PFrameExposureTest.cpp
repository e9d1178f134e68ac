// SPDX-License-Identifier: MIT
#include <apps/common/camera/PFrameExposure.h>

#include <apps/common/TestFrames.h>

#include <apps/common/camera/PSettingNames.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

PFrameExposure makeExposure(const TestSettings& values) {
    return PFrameExposure::of(*makeSettings(values), {});
}

QVariant record(const TestExposureRecord& value) {
    return QVariant::fromValue(value);
}

TEST(FrameExposure, time_and_gain_are_those_of_the_single_settings) {
    const PFrameExposure exposure =
        makeExposure({{"autoexpottime", 12'500}, {"autoexpogain", 150}, {"autoexponeable", false}});
    EXPECT_EQ(exposure.milliseconds, 12.5);
    EXPECT_EQ(exposure.gain, 1.5);
    EXPECT_FALSE(exposure.automatic);
}

TEST(FrameExposure, the_record_has_them_where_there_are_no_single_settings) {
    const PFrameExposure exposure = makeExposure({{"extexposure", record({})}});
    EXPECT_EQ(exposure.milliseconds, 1.5);
    EXPECT_EQ(exposure.gain, 1.2);
}

TEST(FrameExposure, the_record_of_triggered_frames_has_the_time_in_parts) {
    TestExposureRecord triggered;
    triggered.capturemode = 1;
    triggered.minutes = 1;
    triggered.seconds = 2;
    triggered.milliseconds = 3;
    triggered.microseconds = 500;
    const PFrameExposure exposure = makeExposure({{"extexposure", record(triggered)}});
    ASSERT_TRUE(exposure.milliseconds);
    EXPECT_DOUBLE_EQ(*exposure.milliseconds, 62'003.5);
}

TEST(FrameExposure, automatic_exposure_shows_in_either) {
    TestExposureRecord automatic;
    automatic.autoexpenabled = true;
    EXPECT_TRUE(makeExposure({{"autoexponeable", true}}).automatic);
    EXPECT_TRUE(makeExposure({{"extexposure", record(automatic)}}).automatic);
}

TEST(FrameExposure, the_plain_switch_of_automatic_exposure_has_precedence_over_the_records) {
    TestExposureRecord automatic;
    automatic.autoexpenabled = true;
    EXPECT_FALSE(
        makeExposure({{"autoexponeable", false}, {"extexposure", record(automatic)}}).automatic);
    automatic.capturemode = 1; // the record's own switch is for the video only
    EXPECT_FALSE(makeExposure({{"extexposure", record(automatic)}}).automatic);
}

TEST(FrameExposure, has_texts_with_units) {
    PFrameExposure exposure =
        makeExposure({{"autoexpottime", 158'647}, {"autoexpogain", 100}, {"autoexponeable", true}});
    EXPECT_EQ(exposure.timeText(), u"158.647 ms (automatic)"_qs);
    EXPECT_EQ(exposure.gainText(), u"100 %"_qs);
    exposure = makeExposure({{"autoexpottime", 20'000}, {"autoexpogain", 123}});
    EXPECT_EQ(exposure.timeText(), u"20 ms (manual)"_qs);
    EXPECT_EQ(exposure.gainText(), u"123 %"_qs);
    EXPECT_EQ(PFrameExposure::toText(5'000), u"5000 ms"_qs);
    EXPECT_EQ(PFrameExposure::toText(0.05), u"0.05 ms"_qs);
    EXPECT_EQ(makeExposure({}).timeText(), QString());
    EXPECT_EQ(makeExposure({}).gainText(), QString());
}

TEST(FrameExposure, binning_is_read_from_the_name_of_the_choice) {
    FakeDevice device;
    device.makeProperties = [] {
        PEnumeration choices;
        choices.addItem(QUuid::createUuid(), u"No binning"_qs, {}, "1");
        choices.addItem(QUuid::createUuid(), u"Add 2x2"_qs, {}, "2");
        choices.addItem(QUuid::createUuid(), u"Average 12x12"_qs, {}, "140");
        choices.addItem(QUuid::createUuid(), u"Secret"_qs, {}, "99");
        auto* const binning = new FakeProperty("binning");
        binning->rangeInDevice = QVariant::fromValue(choices);
        return QList<PDeviceProperty*>{binning};
    };
    const PSettingNames names = PSettingNames::of(&device);
    const auto readBinning = [&](const QString& choice) {
        return PFrameExposure::of(*makeSettings({{"binning", choice}}), names).binning;
    };
    EXPECT_EQ(readBinning(u"No binning"_qs), u"1x1"_qs);
    EXPECT_EQ(readBinning(u"Add 2x2"_qs), u"2x2"_qs);
    EXPECT_EQ(readBinning(u"Average 12x12"_qs), u"12x12"_qs);
    EXPECT_EQ(readBinning(u"Secret"_qs), QString());
}

TEST(FrameExposure, a_camera_that_answers_0_has_neither_time_nor_gain) {
    TestExposureRecord none;
    none.exp = 0;
    none.gain = 0;
    for (const TestSettings& values : {TestSettings({{"autoexpottime", 0}, {"autoexpogain", 0}}),
                                       TestSettings({{"extexposure", record(none)}})}) {
        EXPECT_FALSE(makeExposure(values).milliseconds);
        EXPECT_FALSE(makeExposure(values).gain);
    }
}

TEST(FrameExposure, without_settings_nothing_is_known) {
    for (const TestSettings& values :
         {TestSettings(), TestSettings({{"autoexpottime", QVariant()}, {"extexposure", 7}})}) {
        const PFrameExposure exposure = makeExposure(values);
        EXPECT_FALSE(exposure.milliseconds);
        EXPECT_FALSE(exposure.gain);
        EXPECT_EQ(exposure.binning, QString());
    }
}

} // namespace
