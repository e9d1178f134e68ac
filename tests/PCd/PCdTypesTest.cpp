// SPDX-License-Identifier: MIT
// The codes that plugins pass as numbers, and which therefore must not change.
#include <PCd/PCdTypes.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct CodeRow {
    const char* name;
    int code;
    int expected;
};

template <typename Enumeration>
CodeRow row(const char* name, Enumeration code, int expected) {
    return {name, int(code), expected};
}

class PCdTypesCode : public RowTest<CodeRow> {};

ROW_TEST(PCdTypesCode, is_what_plugins_pass) {
    EXPECT_EQ(GetParam().code, GetParam().expected);
}

using Type = PCD::DevicePropertyType;
using Option = PCD::DeviceOption;

ROWS(Rows, PCdTypesCode, row("a_panel_of_its_own", Type::Custom, 1),
     row("a_whole_number", Type::Integer, 5), row("a_time", Type::Duration, 6),
     row("a_switch", Type::Switch, 9), row("a_choice", Type::Choice, 10),
     row("an_action", Type::Action, 11), row("a_region", Type::ScanArea, 19),
     row("a_device_that_may_vanish", Option::HotPluggable, 0x40),
     row("a_still_that_arrives_later", Option::AsynchronousStill, 0x80),
     row("no_unit", ValueUnits::None, 0), row("microseconds", ValueUnits::Microsecond, 8),
     row("no_kind_of_unit", ValueUnitType::None, 0), row("units_of_time", ValueUnitType::Time, 3));

} // namespace

#include "moc_RoleRecord.cpp"
