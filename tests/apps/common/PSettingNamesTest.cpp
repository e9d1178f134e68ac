// SPDX-License-Identifier: MIT
#include <apps/common/PSettingNames.h>

#include "TestFrames.h"

#include <support/QtPrinters.h>

#include <QRect>

#include <gtest/gtest.h>

namespace {

TEST(SettingNames, values_are_told_as_people_write_them) {
    const PSettingNames names;
    EXPECT_EQ(names.text("contrast", 12), u"12"_qs);
    EXPECT_EQ(names.text("hflip", true), u"on"_qs);
    EXPECT_EQ(names.text("roi", QRect(1, 2, 30, 40)), u"1,2,30,40"_qs);
}

TEST(SettingNames, a_record_is_told_field_by_field) {
    EXPECT_EQ(PSettingNames().text("extexposure", QVariant::fromValue(TestExposureRecord())),
              u"gain 120, exp 1.5, autoexpenabled off, minutes 0, seconds 0, milliseconds 0, "
              "microseconds 0, capturemode 0"_qs);
}

TEST(SettingNames, a_choice_that_is_not_known_is_told_as_it_is) {
    EXPECT_EQ(PSettingNames().text("binning", QUuid()),
              u"{00000000-0000-0000-0000-000000000000}"_qs);
    EXPECT_EQ(PSettingNames().item("binning", QUuid()), PEnumerationItem());
}

} // namespace
