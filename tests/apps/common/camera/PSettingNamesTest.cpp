// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSettingNames.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

/// The names of a device, already destroyed, with a choice "binning" and a number "speed".
PSettingNames namesOfADevice() {
    FakeDevice device;
    device.makeProperties = [] {
        PEnumeration choices;
        choices.addItem(QUuid::createUuid(), u"No binning"_qs, u"Without"_qs, "1");
        choices.addItem(QUuid::createUuid(), u"Add 2x2"_qs, u"Two by two"_qs, "2");
        auto* const binning = new FakeProperty("binning");
        binning->rangeInDevice = QVariant::fromValue(choices);
        return QList<PDeviceProperty*>{binning, new FakeProperty("speed")};
    };
    return PSettingNames::of(&device);
}

TEST(SettingNames, a_choice_is_found_by_its_name) {
    const PEnumerationItem item = namesOfADevice().item("binning", u"Add 2x2"_qs);
    EXPECT_EQ(item.title, u"Two by two"_qs);
    EXPECT_EQ(item.data, QByteArray("2"));
}

TEST(SettingNames, an_unknown_choice_has_no_item) {
    const PSettingNames names = namesOfADevice();
    EXPECT_EQ(names.item("binning", u"Add 3x3"_qs), PEnumerationItem());
    EXPECT_EQ(names.item("binning", 2), PEnumerationItem());
    EXPECT_EQ(names.item("speed", u"Add 2x2"_qs), PEnumerationItem());
    EXPECT_EQ(PSettingNames().item("binning", u"Add 2x2"_qs), PEnumerationItem());
}

} // namespace
