// SPDX-License-Identifier: MIT
#include <apps/common/record/PFileSequence.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

namespace {

PFileSequence series(const QString& pattern) {
    PFileSequence files;
    EXPECT_TRUE(files.setPattern(pattern).isOk()) << pattern.toStdString();
    return files;
}

class FileSequence : public FolderTest {};

TEST_F(FileSequence, numbers_are_padded_with_zeros_to_the_length_of_the_run) {
    EXPECT_EQ(series(u"a/f-###.png"_qs).path(7), u"a/f-007.png"_qs);
}

TEST_F(FileSequence, numbers_that_are_longer_than_the_run_are_whole) {
    EXPECT_EQ(series(u"##.png"_qs).path(1234), u"1234.png"_qs);
}

TEST_F(FileSequence, a_percent_sign_and_a_number_in_the_name_are_left_alone) {
    EXPECT_EQ(series(u"100%1-#.png"_qs).path(2), u"100%1-2.png"_qs);
}

TEST_F(FileSequence, a_pattern_without_or_with_two_runs_is_refused_and_named) {
    for (const QString& pattern : {u"a.png"_qs, u"#a#.png"_qs, u"#/a.png"_qs, QString()}) {
        PFileSequence files;
        const PStatus status = files.setPattern(pattern);
        EXPECT_FALSE(status.isOk());
        EXPECT_TRUE(status.reason().contains(u'"' + pattern + u'"'));
    }
}

TEST_F(FileSequence, the_lowest_existing_number_is_found) {
    for (const QString& name : {u"f-012.png"_qs, u"f-003.png"_qs, u"f-020.png"_qs})
        writeFile(path(name), "x");
    EXPECT_EQ(series(path(u"f-###.png"_qs)).firstExisting(100), path(u"f-003.png"_qs));
}

TEST_F(FileSequence, numbers_beyond_the_last_do_not_matter) {
    writeFile(path(u"f-012.png"_qs), "x");
    EXPECT_EQ(series(path(u"f-###.png"_qs)).firstExisting(11), QString());
    EXPECT_EQ(series(path(u"f-###.png"_qs)).firstExisting(12), path(u"f-012.png"_qs));
}

TEST_F(FileSequence, names_that_only_look_like_the_series_do_not_matter) {
    for (const QString& name : {u"f-0012.png"_qs, u"f-12.png"_qs, u"f-000.png"_qs, u"f-abc.png"_qs,
                                u"g-001.png"_qs, u"f-001.tif"_qs})
        writeFile(path(name), "x");
    EXPECT_EQ(series(path(u"f-###.png"_qs)).firstExisting(1000), QString());
}

} // namespace
