// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PNamePattern.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

const QDateTime taken(QDate(2026, 11, 21), QTime(9, 8, 7, 65));

struct NameRow {
    const char* name;
    const char* text;
    int number;
    const char* expected;
};

struct BadPatternRow {
    const char* name;
    const char* text;
    const char* named; ///< what the message has to name
};

class PNamePatternTest : public RowTest<NameRow> {};
class PNamePatternBadTest : public RowTest<BadPatternRow> {};

} // namespace

ROW_TEST(PNamePatternTest, is_named) {
    PNamePattern pattern;
    ASSERT_TRUE(pattern.setText(QString::fromUtf8(GetParam().text)).isOk());
    EXPECT_EQ(pattern.name(u"Cam 1/A"_qs, taken, GetParam().number),
              QString::fromUtf8(GetParam().expected));
}

ROWS(Names, PNamePatternTest, NameRow{"a_camera_as_file_systems_take_it", "{camera}", 1, "Cam_1_A"},
     NameRow{"the_second_try_of_a_text_without_a_number", "{camera}", 2, "Cam_1_A_2"},
     NameRow{"date_and_time_to_the_millisecond", "{date} {time}", 1, "2026-11-21 09-08-07-065"},
     NameRow{"a_number_where_it_stands", "slide-{n}-{date}", 1, "slide-1-2026-11-21"},
     NameRow{"a_later_number_where_it_stands", "slide-{n}", 12, "slide-12"},
     NameRow{"a_mark_twice", "{n}{n}", 3, "33"},
     NameRow{"a_text_of_another_alphabet", "срез {n}", 4, "срез 4"});

ROW_TEST(PNamePatternBadTest, is_refused_by_name_and_leaves_the_pattern_as_it_was) {
    PNamePattern pattern;
    const QString before = pattern.text();
    const PStatus status = pattern.setText(QString::fromUtf8(GetParam().text));
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(QString::fromUtf8(GetParam().named)))
        << status.reason().toStdString();
    EXPECT_EQ(pattern.text(), before);
}

ROWS(Texts, PNamePatternBadTest, BadPatternRow{"nothing", "", "\"\""},
     BadPatternRow{"only_spaces", "  ", "\"  \""}, BadPatternRow{"a_hidden_file", ".{n}", ".{n}"},
     BadPatternRow{"a_folder", "a/{n}", "/"},
     BadPatternRow{"an_unknown_mark", "{serial}", "{serial}"},
     BadPatternRow{"a_mark_without_its_end", "a{n", "{n"},
     BadPatternRow{"an_end_without_a_mark", "a}", "}"},
     BadPatternRow{"a_line_feed", "a\nb", "name cannot contain"},
     BadPatternRow{"a_text_that_names_cannot_be_as_long_as",
                   "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
                   "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa",
                   "100"});

TEST(PNamePatternUsualTest, has_the_camera_and_the_time) {
    EXPECT_EQ(PNamePattern().name(u"Cam"_qs, taken, 1), u"Cam_2026-11-21_09-08-07-065"_qs);
}
