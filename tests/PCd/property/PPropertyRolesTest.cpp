// SPDX-License-Identifier: MIT
#include <PCd/property/PPropertyRoles.h>

#include <PCd/FakeProperty.h>
#include <PCd/RoleRecord.h>

#include <PCd/PEnumeration.h>

#include <support/QtPrinters.h>

#include <QSignalSpy>
#include <QUuid>

#include <gtest/gtest.h>

namespace {

TEST(PropertyRoles, are_what_was_declared_last) {
    FakeProperty property("shutter");
    PPropertyRoles::declare(property, {{PRole::Gain}});
    PPropertyRoles::declare(property, {{PRole::ExposureTime, PRoleUnit::Seconds}});
    const PRoleBindings roles = PPropertyRoles::of(property);
    ASSERT_EQ(roles.size(), 1);
    EXPECT_EQ(roles.first().role, PRole::ExposureTime);
    EXPECT_EQ(roles.first().unit, PRoleUnit::Seconds);
}

TEST(PropertyRoles, are_none_where_none_are_declared) {
    EXPECT_TRUE(PPropertyRoles::of(FakeProperty("autoexpottime")).isEmpty());
    EXPECT_TRUE(PPropertyRoles::value(FakeProperty("autoexpottime")).bindings.isEmpty());
}

TEST(PropertyRoles, neither_read_the_device_nor_emit) {
    FakeProperty property("shutter");
    const QSignalSpy changes(&property, &PDeviceProperty::valueChanged);
    PPropertyRoles::declare(property, {{PRole::Gain}});
    PPropertyRoles::value(property);
    EXPECT_EQ(property.calls, QStringList());
    EXPECT_EQ(changes.size(), 0);
}

TEST(PropertyRoles, come_with_the_cached_value) {
    FakeProperty property("shutter", 7);
    property.setValueInner(20);
    PPropertyRoles::declare(property, {{PRole::ExposureTime, PRoleUnit::Seconds}});
    const PRoleValue value = PPropertyRoles::value(property);
    EXPECT_EQ(value.id, QByteArray("shutter"));
    EXPECT_EQ(value.number(PRole::ExposureTime), 20'000);
}

TEST(PropertyRoles, of_a_choice_come_with_its_name) {
    PEnumeration turns;
    const QUuid left = QUuid::createUuid();
    turns.addItem(left, u"270"_qs, u"to the left"_qs, {});
    FakeProperty property("turn", left);
    property.rangeInDevice = QVariant::fromValue(turns);
    property.updateValueFromDevice();
    PPropertyRoles::declare(property, {{PRole::Rotation}});
    EXPECT_EQ(PPropertyRoles::value(property).number(PRole::Rotation), 270);
}

TEST(PropertyRoles, name_the_method_that_has_one) {
    FakeProperty property("all");
    PPropertyRoles::declare(property, RoleRecord::roles());
    EXPECT_EQ(PPropertyRoles::method(property, PRole::FireTrigger), QByteArray("fire"));
    EXPECT_EQ(PPropertyRoles::method(property, PRole::ExposureTime), QByteArray());
    EXPECT_EQ(PPropertyRoles::method(property, PRole::SensorTemperature), QByteArray());
}

} // namespace
