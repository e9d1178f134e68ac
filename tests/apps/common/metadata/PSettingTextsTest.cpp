// SPDX-License-Identifier: MIT
#include <apps/common/metadata/PSettingTexts.h>

#include <apps/common/TestFrames.h>

#include <apps/common/metadata/PPictureMetadata.h>

#include <support/QtPrinters.h>

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

struct TestCooler {
    Q_GADGET
    Q_PROPERTY(int on MEMBER on)
    Q_PROPERTY(qint16 target MEMBER target)

public:
    int on = 1;
    qint16 target = -50;
};

struct TestFan {
    Q_GADGET
    Q_PROPERTY(int enable MEMBER enable)
    Q_PROPERTY(int target MEMBER target)

public:
    int enable = -1;
    int target = 0;
};

QStringList toLines(const TestSettings& values) {
    QStringList lines;
    for (const auto& [key, text] : PSettingTexts::of(*makeSettings(values)))
        lines.append(key + u": "_qs + text);
    return lines;
}

TEST(SettingTexts, have_titles_and_units) {
    EXPECT_EQ(toLines({{"tint", 1000},
                       {"negative", true},
                       {"rotate", u"90"_qs},
                       {"roi", QRect(0, 0, 64, 48)},
                       {"binning", u"Add 2x2"_qs},
                       {"awbonce", QVariant()},
                       {"teccontrol", QVariant::fromValue(TestCooler())}}),
              (QStringList{u"White balance tint: 1000"_qs, u"Negative: on"_qs, u"Rotation: 90°"_qs,
                           u"Region: 0,0,64,48 px"_qs, u"Binning: Add 2x2"_qs, u"Cooler: on"_qs,
                           u"Cooler target: -5 °C"_qs}));
}

/// A camera whose record has 5 s for triggered frames; 158.647 ms is the exposure of this frame.
TestSettings settingsWith(TestExposureRecord record) {
    record.seconds = 5;
    return {{"extexposure", QVariant::fromValue(record)},
            {"autoexponeable", true},
            {"autoexpotarget", 120},
            {"autoexpottime", 158'647},
            {"autoexpogain", 110}};
}

TestExposureRecord triggered(int frames) {
    TestExposureRecord record;
    record.capturemode = 1;
    record.spincount = frames;
    return record;
}

/// The lines with an exposure time, of all that are saved with a picture.
QStringList exposureTimesWith(const TestExposureRecord& record) {
    PFrameStamp stamp;
    stamp.settings = makeSettings(settingsWith(record));
    QStringList lines;
    for (const auto& [key, text] : pictureMetadata({}, &stamp))
        lines.append(key + u": "_qs + text);
    return lines.filter(QRegularExpression(u"[0-9] [mµ]?s\\b"_qs));
}

TEST(SettingTexts, of_a_live_frame_leave_out_the_exposure_time_and_the_trigger) {
    EXPECT_EQ(toLines(settingsWith({})),
              (QStringList{u"Gain: 110 %"_qs, u"Exposure target: 120"_qs, u"Capture: video"_qs}));
}

TEST(SettingTexts, of_a_triggered_frame_have_the_trigger) {
    EXPECT_EQ(toLines(settingsWith(triggered(3))),
              (QStringList{u"Gain: 110 %"_qs, u"Exposure target: 120"_qs,
                           u"Trigger sequence: 3 frames"_qs, u"Trigger source: software"_qs,
                           u"Capture: triggered"_qs}));
}

TEST(SettingTexts, of_a_single_triggered_frame_are_in_the_singular) {
    EXPECT_TRUE(toLines(settingsWith(triggered(1))).contains(u"Trigger sequence: 1 frame"_qs));
}

TEST(SettingTexts, of_any_frame_leave_one_exposure_time_in_its_picture) {
    const QStringList once{u"Exposure: 158.647 ms (automatic)"_qs};
    EXPECT_EQ(exposureTimesWith({}), once);
    EXPECT_EQ(exposureTimesWith(triggered(1)), once);
}

TEST(SettingTexts, leave_out_a_fan_that_could_not_be_read) {
    EXPECT_EQ(toLines({{"fan", QVariant::fromValue(TestFan())}}), QStringList());
    EXPECT_EQ(toLines({{"fan", QVariant::fromValue(TestFan{1, 2})}}),
              (QStringList{u"Fan: on"_qs, u"Fan speed level: 2"_qs}));
}

TEST(SettingTexts, of_what_is_not_known_have_its_id) {
    EXPECT_EQ(toLines({{"sharpness", 3}}), QStringList{u"Setting sharpness: 3"_qs});
}

} // namespace

#include "PSettingTextsTest.moc"
