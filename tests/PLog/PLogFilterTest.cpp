// SPDX-License-Identifier: MIT
#include <PLog/PLogFilter.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct Pass {
    const char* name;
    const char* filter;
    const char* source;
    PLogLevel level;
    bool passes;
};

const Pass passes[] = {
    {"info_passes_info", "info", "a", PLogLevel::Info, true},
    {"info_stops_debug", "info", "a", PLogLevel::Debug, false},
    {"debug_passes_debug", "debug", "a", PLogLevel::Debug, true},
    {"warning_stops_info", "warning", "a", PLogLevel::Info, false},
    {"warning_passes_error", "warning", "a", PLogLevel::Error, true},
    {"off_stops_errors", "off", "a", PLogLevel::Error, false},
    {"a_record_of_level_off_never_passes", "debug", "a", PLogLevel::Off, false},
    {"a_source_of_its_own_level_passes", "warning,a=debug", "a", PLogLevel::Debug, true},
    {"other_sources_keep_the_general_level", "warning,a=debug", "b", PLogLevel::Debug, false},
    {"a_source_can_be_quietened", "debug,a=off", "a", PLogLevel::Error, false},
    {"a_source_alone_leaves_the_others_at_info", "a=error", "b", PLogLevel::Info, true},
    {"blanks_around_words_do_not_matter", " warning , a = debug ", "a", PLogLevel::Debug, true},
    {"a_source_name_may_have_a_dot", "error,qt.core=debug", "qt.core", PLogLevel::Debug, true},
    {"a_source_is_matched_as_a_whole", "error,qt=debug", "qt.core", PLogLevel::Debug, false},
};

struct Bad {
    const char* name;
    const char* filter;
    const char* word; // named in the reason
};

const Bad badFilters[] = {
    {"an_empty_text", "", "\"\""},
    {"a_level_that_does_not_exist", "loud", "\"loud\""},
    {"a_level_in_capitals", "DEBUG", "\"DEBUG\""},
    {"a_source_without_a_level", "info,a=", "\"a=\""},
    {"a_source_with_an_unknown_level", "info,a=debug,b=high", "\"b=high\""},
    {"a_level_without_a_source", "info,=debug", "\"=debug\""},
    {"a_second_general_level", "info,debug", "\"debug\""},
    {"a_general_level_after_a_source", "a=info,debug", "\"debug\""},
    {"a_source_twice", "info,a=debug,a=error", "\"a=error\""},
    {"a_comma_at_the_end", "info,", "\"\""},
};

class PLogFilterPasses : public RowTest<Pass> {};

class PLogFilterRefuses : public RowTest<Bad> {};

} // namespace

ROW_TEST(PLogFilterPasses, what_it_says) {
    const Pass& row = GetParam();
    PLogFilter filter;
    const PStatus status = filter.parse(QLatin1String(row.filter));
    ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
    EXPECT_EQ(filter.passes(QLatin1String(row.source), row.level), row.passes);
    EXPECT_EQ(filter.text(), QLatin1String(row.filter));
}

ROWS_IN(Filters, PLogFilterPasses, passes);

ROW_TEST(PLogFilterRefuses, a_bad_text_naming_the_word_and_the_levels) {
    PLogFilter filter;
    ASSERT_TRUE(filter.parse(u"error,a=debug"_qs).isOk());
    const PStatus status = filter.parse(QLatin1String(GetParam().filter));
    ASSERT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(QLatin1String(GetParam().word)))
        << status.reason().toStdString();
    EXPECT_TRUE(status.reason().contains(u"debug, info, warning, error, off"));
    EXPECT_EQ(filter.text(), u"error,a=debug"_qs) << "nothing may have changed";
    EXPECT_TRUE(filter.passes(u"a"_qs, PLogLevel::Debug));
    EXPECT_FALSE(filter.passes(u"b"_qs, PLogLevel::Warning));
}

ROWS_IN(Filters, PLogFilterRefuses, badFilters);

TEST(PLogFilter, starts_as_info) {
    const PLogFilter filter;
    EXPECT_EQ(filter.text(), u"info"_qs);
    EXPECT_TRUE(filter.passes(u"a"_qs, PLogLevel::Info));
    EXPECT_FALSE(filter.passes(u"a"_qs, PLogLevel::Debug));
}
