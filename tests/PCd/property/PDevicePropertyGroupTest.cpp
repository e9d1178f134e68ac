// SPDX-License-Identifier: MIT
#include <PCd/FakeProperty.h>

#include <PCd/property/PDevicePropertyGroup.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

TEST(PDevicePropertyGroup, keeps_its_id_and_title) {
    const PDevicePropertyGroup group(QStringLiteral("color"), QStringLiteral("Colour"));
    EXPECT_EQ(group.id(), QStringLiteral("color"));
    EXPECT_EQ(group.title(), QStringLiteral("Colour"));
}

TEST(PDevicePropertyGroup, keeps_the_order_of_its_members) {
    FakeProperty hue("hue");
    FakeProperty gain("gain");
    PDevicePropertyGroup group(QStringLiteral("g"), QStringLiteral("Group"));
    group.addProperty(&hue);
    group.addProperty(&gain);
    EXPECT_EQ(group.properties(), (QList<PDeviceProperty*>{&hue, &gain}));
}

TEST(PDevicePropertyGroup, ignores_a_null_member) {
    FakeProperty gain("gain");
    PDevicePropertyGroup group(QStringLiteral("g"), QStringLiteral("Group"));
    group.addProperty(nullptr);
    group.addProperty(&gain);
    EXPECT_EQ(group.properties(), (QList<PDeviceProperty*>{&gain}));
}

TEST(PDevicePropertyGroup, forgets_a_member_that_was_deleted) {
    FakeProperty hue("hue");
    PDevicePropertyGroup group(QStringLiteral("g"), QStringLiteral("Group"));
    {
        FakeProperty gain("gain");
        group.addProperty(&gain);
        group.addProperty(&hue);
    }
    EXPECT_EQ(group.properties(), (QList<PDeviceProperty*>{&hue}));
}
