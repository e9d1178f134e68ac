// SPDX-License-Identifier: MIT
#include <PCd/property/value/PRole.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct UnitRow {
    const char* name;
    PRoleUnit unit;
    double number;
    double inRole;
};

class RoleUnit : public RowTest<UnitRow> {};

ROW_TEST(RoleUnit, is_converted_to_that_of_the_role) {
    const PRoleBinding binding{PRole::Gain, GetParam().unit};
    EXPECT_EQ(binding.toRole(GetParam().number), GetParam().inRole);
}

ROWS(Units, RoleUnit, UnitRow{"its_own_stays", PRoleUnit::Own, 1.25, 1.25},
     UnitRow{"microseconds_are_thousandths", PRoleUnit::Microseconds, 158'647, 158.647},
     UnitRow{"milliseconds_are_the_unit_of_times", PRoleUnit::Milliseconds, 20, 20},
     UnitRow{"seconds_are_a_thousand", PRoleUnit::Seconds, 0.02, 20},
     UnitRow{"minutes_are_sixty_thousand", PRoleUnit::Minutes, 2, 120'000},
     UnitRow{"per_cent_are_hundredths", PRoleUnit::Percent, 123, 1.23},
     UnitRow{"decibels_are_of_an_amplitude", PRoleUnit::Decibels, 20, 10},
     UnitRow{"zero_decibels_are_a_factor_of_1", PRoleUnit::Decibels, 0, 1},
     UnitRow{"tenths_of_a_degree", PRoleUnit::TenthsOfDegree, -55, -5.5});

TEST(RoleBinding, is_plain_without_field_and_method) {
    EXPECT_TRUE(PRoleBinding{PRole::Gain}.isPlain());
    EXPECT_FALSE((PRoleBinding{PRole::Gain, PRoleUnit::Own, "gain"}.isPlain()));
    EXPECT_FALSE((PRoleBinding{PRole::FireTrigger, PRoleUnit::Own, {}, "fire"}.isPlain()));
}

} // namespace
