// SPDX-License-Identifier: MIT
#include <PCd/FakeProperty.h>

#include <PCd/property/PDevicePropertyGroup.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

TEST(PDevicePropertyGroup, keeps_its_id_and_title) {
    const PDevicePropertyGroup group(u"color"_qs, u"Colour"_qs);
    EXPECT_EQ(group.id(), u"color"_qs);
    EXPECT_EQ(group.title(), u"Colour"_qs);
}

TEST(PDevicePropertyGroup, keeps_the_order_of_its_members) {
    FakeProperty hue("hue");
    FakeProperty gain("gain");
    PDevicePropertyGroup group(u"g"_qs, u"Group"_qs);
    group.addProperty(&hue);
    group.addProperty(&gain);
    EXPECT_EQ(group.properties(), (QList<PDeviceProperty*>{&hue, &gain}));
}

TEST(PDevicePropertyGroup, ignores_a_null_member) {
    FakeProperty gain("gain");
    PDevicePropertyGroup group(u"g"_qs, u"Group"_qs);
    group.addProperty(nullptr);
    group.addProperty(&gain);
    EXPECT_EQ(group.properties(), (QList<PDeviceProperty*>{&gain}));
}

TEST(PDevicePropertyGroup, forgets_a_member_that_was_deleted) {
    FakeProperty hue("hue");
    PDevicePropertyGroup group(u"g"_qs, u"Group"_qs);
    {
        FakeProperty gain("gain");
        group.addProperty(&gain);
        group.addProperty(&hue);
    }
    EXPECT_EQ(group.properties(), (QList<PDeviceProperty*>{&hue}));
}
