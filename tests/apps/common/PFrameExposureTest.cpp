// SPDX-License-Identifier: MIT
#include <apps/common/PFrameExposure.h>

#include "TestFrames.h"

#include <apps/common/PSettingNames.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

PFrameExposure exposureOf(const TestSettings& values) {
    return PFrameExposure::of(*settingsOf(values), {});
}

QVariant record(const TestExposureRecord& value) {
    return QVariant::fromValue(value);
}

TEST(FrameExposure, time_and_gain_are_those_of_the_single_settings) {
    const PFrameExposure exposure =
        exposureOf({{"autoexpottime", 12'500}, {"autoexpogain", 150}, {"autoexponeable", false}});
    EXPECT_EQ(exposure.milliseconds, 12.5);
    EXPECT_EQ(exposure.gain, 1.5);
    EXPECT_FALSE(exposure.automatic);
}

TEST(FrameExposure, the_record_tells_them_where_there_are_no_single_settings) {
    const PFrameExposure exposure = exposureOf({{"extexposure", record({})}});
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
    const PFrameExposure exposure = exposureOf({{"extexposure", record(triggered)}});
    ASSERT_TRUE(exposure.milliseconds);
    EXPECT_DOUBLE_EQ(*exposure.milliseconds, 62'003.5);
}

TEST(FrameExposure, automatic_exposure_shows_in_either) {
    TestExposureRecord automatic;
    automatic.autoexpenabled = true;
    EXPECT_TRUE(exposureOf({{"autoexponeable", true}}).automatic);
    EXPECT_TRUE(exposureOf({{"extexposure", record(automatic)}}).automatic);
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
    const auto binningOf = [&](const QString& choice) {
        return PFrameExposure::of(*settingsOf({{"binning", choice}}), names).binning;
    };
    EXPECT_EQ(binningOf(u"No binning"_qs), u"1x1"_qs);
    EXPECT_EQ(binningOf(u"Add 2x2"_qs), u"2x2"_qs);
    EXPECT_EQ(binningOf(u"Average 12x12"_qs), u"12x12"_qs);
    EXPECT_EQ(binningOf(u"Secret"_qs), QString());
}

TEST(FrameExposure, without_settings_nothing_is_known) {
    for (const TestSettings& values :
         {TestSettings(), TestSettings({{"autoexpottime", QVariant()}, {"extexposure", 7}})}) {
        const PFrameExposure exposure = exposureOf(values);
        EXPECT_FALSE(exposure.milliseconds);
        EXPECT_FALSE(exposure.gain);
        EXPECT_EQ(exposure.binning, QString());
    }
}

} // namespace
