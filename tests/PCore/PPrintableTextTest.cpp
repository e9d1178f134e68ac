// SPDX-License-Identifier: MIT
#include <PCore/PPrintableText.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct TextRow {
    const char* name;
    QString text;
    QString line;
};

class PPrintableTextTest : public RowTest<TextRow> {};

} // namespace

ROWS(texts, PPrintableTextTest,
     TextRow{"plain_text_stays", u"Größe 3 µm \\ «проба»"_qs, u"Größe 3 µm \\ «проба»"_qs},
     TextRow{"no_text_stays", QString(), QString()},
     TextRow{"a_character_of_two_units_stays", u"\U0001F52C"_qs, u"\U0001F52C"_qs},
     TextRow{"an_escape_sequence_is_visible", u"a\x1b[2J"_qs, u"a\\x1b[2J"_qs},
     TextRow{"line_breaks_are_visible", u"a\nb\rc"_qs, u"a\\nb\\rc"_qs},
     TextRow{"tabulator_and_bell_are_visible", u"a\tb\a"_qs, u"a\\tb\\x07"_qs},
     TextRow{"the_second_set_of_controls_is_visible", u"a\u009b2J\u0085"_qs, u"a\\x9b2J\\x85"_qs},
     TextRow{"a_null_character_is_visible", QString(QChar(0)), u"\\x00"_qs},
     TextRow{"line_breaks_of_unicode_are_visible", u"a\u2028b\u2029"_qs, u"a\\u2028b\\u2029"_qs},
     TextRow{"joined_letters_stay", u"نمی\u200cخواهم"_qs, u"نمی\u200cخواهم"_qs},
     TextRow{"a_part_in_another_direction_is_visible", u"\u2067a\u2069\u202ab\u202c"_qs,
             u"\\u2067a\\u2069\\u202ab\\u202c"_qs},
     TextRow{"a_change_of_direction_is_visible", u"a\u202egnp.b"_qs, u"a\\u202egnp.b"_qs});

ROW_TEST(PPrintableTextTest, as_a_line) {
    EXPECT_EQ(PPrintableText::toLine(GetParam().text), GetParam().line);
}

TEST(PPrintableText, lines_keep_their_breaks_and_nothing_else) {
    EXPECT_EQ(PPrintableText::toLines(u"a\nb\x1b[2J\r\n"_qs), u"a\nb\\x1b[2J\\r\n"_qs);
}
