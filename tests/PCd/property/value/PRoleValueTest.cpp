// SPDX-License-Identifier: MIT
#include <PCd/property/value/PRoleValue.h>

#include <PCd/RoleRecord.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

const PRoleValue plain{"shutter", 20'000, {{PRole::ExposureTime, PRoleUnit::Microseconds}}};

PRoleValue record() {
    return {"all", RoleRecord::value(), RoleRecord::roles()};
}

TEST(RoleValue, of_a_plain_property_is_its_value) {
    EXPECT_TRUE(plain.hasPlain(PRole::ExposureTime));
    EXPECT_EQ(plain.part(PRole::ExposureTime), 20'000);
    EXPECT_EQ(plain.number(PRole::ExposureTime), 20);
}

TEST(RoleValue, of_a_composite_property_is_the_field) {
    EXPECT_TRUE(record().has(PRole::ExposureTime));
    EXPECT_FALSE(record().hasPlain(PRole::ExposureTime));
    EXPECT_EQ(record().part(PRole::ExposureTime), 0.25);
    EXPECT_EQ(record().number(PRole::ExposureTime), 250);
    EXPECT_TRUE(record().isOn(PRole::Triggered));
}

TEST(RoleValue, of_several_fields_is_their_sum) {
    EXPECT_EQ(record().number(PRole::TriggerTime), 2000.5);
}

TEST(RoleValue, is_nothing_without_the_role) {
    for (const PRoleValue& value : {plain, record(), PRoleValue()}) {
        EXPECT_FALSE(value.has(PRole::Rotation));
        EXPECT_EQ(value.part(PRole::Rotation), QVariant());
        EXPECT_EQ(value.number(PRole::Rotation), std::nullopt);
        EXPECT_FALSE(value.isOn(PRole::Rotation));
    }
}

TEST(RoleValue, is_nothing_where_there_is_no_such_field) {
    EXPECT_EQ(record().part(PRole::Gain), QVariant());
    EXPECT_EQ(record().number(PRole::Gain), std::nullopt);
}

TEST(RoleValue, of_a_method_is_not_a_value) {
    EXPECT_FALSE(record().has(PRole::FireTrigger));
    EXPECT_FALSE(record().hasPlain(PRole::FireTrigger));
}

TEST(RoleValue, of_a_choice_is_the_number_that_it_is_called) {
    const PRoleBindings rotation{{PRole::Rotation}};
    EXPECT_EQ((PRoleValue{"turn", u"90"_qs, rotation}.number(PRole::Rotation)), 90);
    EXPECT_EQ((PRoleValue{"turn", u"left"_qs, rotation}.number(PRole::Rotation)), std::nullopt);
}

TEST(RoleValue, is_on_for_1_and_nothing_else) {
    const PRoleBindings negative{{PRole::Negative}};
    EXPECT_TRUE((PRoleValue{"n", true, negative}.isOn(PRole::Negative)));
    EXPECT_TRUE((PRoleValue{"n", 1, negative}.isOn(PRole::Negative)));
    EXPECT_FALSE((PRoleValue{"n", 0, negative}.isOn(PRole::Negative)));
    EXPECT_FALSE((PRoleValue{"n", 7, negative}.isOn(PRole::Negative)));
    EXPECT_FALSE((PRoleValue{"n", QVariant(), negative}.isOn(PRole::Negative)));
}

} // namespace
