// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrFiles.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

#include <cerrno>

namespace {

class ZarrFiles : public FolderTest {
protected:
    const QString file = path(u"a"_qs);

    QStringList names() const {
        return QDir(path(QString()))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

TEST_F(ZarrFiles, a_new_file_has_its_bytes) {
    ASSERT_TRUE(PZarrFiles::create(file, "a\0b", 3).isOk());
    EXPECT_EQ(readFile(file), QByteArray("a\0b", 3));
}

TEST_F(ZarrFiles, a_file_that_exists_is_not_a_new_one) {
    writeFile(file, "mine");
    EXPECT_EQ(PZarrFiles::create(file, "x", 1).reason(), qt_error_string(EEXIST));
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(ZarrFiles, of_a_new_file_that_does_not_fit_nothing_remains) {
    const FileSizeLimit limit(2);
    EXPECT_EQ(PZarrFiles::create(file, "abc", 3).reason(), qt_error_string(EFBIG));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ZarrFiles, a_file_is_replaced_and_nothing_is_left_beside_it) {
    for (const char* bytes : {"first", "second, and longer"}) {
        ASSERT_TRUE(PZarrFiles::replace(file, bytes).isOk());
        EXPECT_EQ(readFile(file), QByteArray(bytes));
        EXPECT_EQ(names(), QStringList(u"a"_qs));
    }
}

TEST_F(ZarrFiles, if_the_new_file_does_not_fit_the_old_one_stays) {
    writeFile(file, "old");
    const FileSizeLimit limit(4);
    EXPECT_EQ(PZarrFiles::replace(file, "longer").reason(), qt_error_string(EFBIG));
    EXPECT_EQ(readFile(file), QByteArray("old"));
    EXPECT_EQ(names(), QStringList(u"a"_qs));
}

TEST_F(ZarrFiles, if_the_file_cannot_be_replaced_the_reason_is_given_and_nothing_remains) {
    ASSERT_TRUE(QDir().mkpath(file + u"/b"_qs));
    EXPECT_EQ(PZarrFiles::replace(file, "x").reason(), qt_error_string(EISDIR));
    EXPECT_EQ(names(), QStringList(u"a"_qs));
}

TEST_F(ZarrFiles, a_folder_is_made_where_there_is_one_above_it) {
    EXPECT_TRUE(PZarrFiles::makeFolder(file).isOk());
    EXPECT_TRUE(QDir(file).exists());
    EXPECT_EQ(PZarrFiles::makeFolder(file).reason(), qt_error_string(EEXIST));
    EXPECT_EQ(PZarrFiles::makeFolder(path(u"b/c"_qs)).reason(), qt_error_string(ENOENT));
}

TEST_F(ZarrFiles, a_folder_with_something_in_it_is_not_replaced_by_another) {
    ASSERT_TRUE(QDir().mkpath(path(u"from"_qs)));
    EXPECT_TRUE(PZarrFiles::rename(path(u"from"_qs), file).isOk());
    writeFile(file + u"/mine"_qs, "mine");
    ASSERT_TRUE(QDir().mkpath(path(u"from"_qs)));
    EXPECT_EQ(PZarrFiles::rename(path(u"from"_qs), file).reason(), qt_error_string(ENOTEMPTY));
    EXPECT_EQ(readFile(file + u"/mine"_qs), QByteArray("mine"));
}

} // namespace
