// SPDX-License-Identifier: MIT
// The order of the composite properties' virtual functions, on which separately built hosts rely.
#include <PCdPlugins/PTDevice/PTExtendedExposure.h>
#include <PCdPlugins/PTDevice/PTFanDevice.h>
#include <PCdPlugins/PTDevice/PTPropBacklight.h>
#include <PCdPlugins/PTDevice/PTPropProcessMode.h>
#include <PCdPlugins/PTDevice/PTTECProperty.h>

#include <support/SlotIndex.h>

#include <gtest/gtest.h>

namespace {

// The slots of QObject's own virtual functions, with the meta-object ones and the destructors.
constexpr std::size_t afterQObject = 12;

template <typename Class>
class CompositePropertySlots : public testing::Test {};

using Composites = testing::Types<PTExtendedExposure, PTFanProperty, PTECProperty>;

} // namespace

// Without the empty third argument Clang warns that one is missing.
TYPED_TEST_SUITE(CompositePropertySlots, Composites, );

TYPED_TEST(CompositePropertySlots, are_those_of_the_bases_and_then_the_range) {
    EXPECT_EQ(slotIndex(&TypeParam::createWidget), afterQObject + 0);
    EXPECT_EQ(slotIndex(&TypeParam::tryGetRange), afterQObject + 5);
    EXPECT_EQ(slotIndex(&TypeParam::trySetValueToDevice), afterQObject + 8);
    EXPECT_EQ(slotIndex(&TypeParam::tryGetValueFromDevice), afterQObject + 9);
    EXPECT_EQ(slotIndex(&TypeParam::convertToT), afterQObject + 10);
    EXPECT_EQ(slotIndex(&TypeParam::convertFromT), afterQObject + 11);
    EXPECT_EQ(slotIndex(&TypeParam::trySetRange), afterQObject + 12);
}

template <typename Class>
class ChoicePropertySlots : public testing::Test {};

using Choices = testing::Types<PTPropProcessMode, PTPropBackligtComp>;

TYPED_TEST_SUITE(ChoicePropertySlots, Choices, );

TYPED_TEST(ChoicePropertySlots, are_those_of_the_base) {
    EXPECT_EQ(slotIndex(&TypeParam::trySetValueToDevice), afterQObject + 8);
    EXPECT_EQ(slotIndex(&TypeParam::tryGetValueFromDevice), afterQObject + 9);
    EXPECT_EQ(slotIndex(&TypeParam::tryGetRangeFromDevice), afterQObject + 12);
}

TEST(PTBacklightPropertySlots, are_those_of_the_bases) {
    EXPECT_EQ(slotIndex(&PTBacklightProperty::createWidget), afterQObject + 0);
    EXPECT_EQ(slotIndex(&PTBacklightProperty::trySetValueToDevice), afterQObject + 8);
    EXPECT_EQ(slotIndex(&PTBacklightProperty::tryGetValueFromDevice), afterQObject + 9);
    EXPECT_EQ(slotIndex(&PTBacklightProperty::tryGetRangeFromDevice), afterQObject + 12);
}
