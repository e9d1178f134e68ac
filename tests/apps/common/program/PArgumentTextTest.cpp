// SPDX-License-Identifier: MIT
#include <apps/common/program/PArgumentText.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

/// The complaint about a program's arguments; empty if there is none.
QString complaint(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "\xff"); // the program's own path is nobody's choice
    return PArgumentText::check(int(arguments.size()), arguments.data()).reason();
}

} // namespace

TEST(PArgumentText, text_in_any_language_is_right) {
    EXPECT_EQ(complaint({}), QString());
    EXPECT_EQ(complaint({"", "-o", "Größe.png", "проба", "\xf0\x9f\x94\xac"}), QString());
}

TEST(PArgumentText, the_first_argument_that_is_not_utf_8_is_named) {
    EXPECT_EQ(complaint({"-o", "a\x1b\xff.png", "\xfe"}),
              u"argument 2, \"a\\x1b\\xff.png\", is not UTF-8: expected text in UTF-8"_qs);
}

TEST(PArgumentText, a_character_that_is_cut_off_is_not_utf_8) {
    EXPECT_EQ(complaint({"a\xc3"}),
              u"argument 1, \"a\\xc3\", is not UTF-8: expected text in UTF-8"_qs);
}
