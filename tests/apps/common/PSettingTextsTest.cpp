// SPDX-License-Identifier: MIT
#include <apps/common/PSettingTexts.h>

#include "TestFrames.h"

#include <support/QtPrinters.h>

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

QStringList linesOf(const TestSettings& values) {
    QStringList lines;
    for (const auto& [key, text] : PSettingTexts::of(*settingsOf(values)))
        lines.append(key + u": "_qs + text);
    return lines;
}

TEST(SettingTexts, have_titles_and_units) {
    EXPECT_EQ(linesOf({{"tint", 1000},
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

TEST(SettingTexts, tell_nothing_of_the_exposure_twice) {
    TestExposureRecord record;
    record.seconds = 5;
    EXPECT_EQ(linesOf({{"extexposure", QVariant::fromValue(record)},
                       {"autoexponeable", true},
                       {"autoexpotarget", 120},
                       {"autoexpottime", 158'647},
                       {"autoexpogain", 110}}),
              (QStringList{u"Gain: 110 %"_qs, u"Exposure target: 120"_qs, u"Capture: video"_qs,
                           u"Trigger exposure: 5000 ms"_qs}));
}

TEST(SettingTexts, of_what_is_not_known_have_its_id) {
    EXPECT_EQ(linesOf({{"sharpness", 3}}), QStringList{u"Setting sharpness: 3"_qs});
}

} // namespace

#include "PSettingTextsTest.moc"
