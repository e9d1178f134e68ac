// SPDX-License-Identifier: MIT
#include <PCore/file/PWholeFile.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

namespace {

class PWholeFileTest : public FolderTest {
protected:
    const QString file = path(u"a.txt"_qs);

    /// Everything in the folder, hidden files included.
    QStringList files() const {
        return QDir(path(QString())).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
};

TEST_F(PWholeFileTest, makes_a_file_and_replaces_it) {
    EXPECT_TRUE(PWholeFile::replace(file, "first, and longer").isOk());
    EXPECT_TRUE(PWholeFile::replace(file, "second").isOk());
    EXPECT_EQ(readFile(file), QByteArray("second"));
    EXPECT_EQ(files(), QStringList{u"a.txt"_qs});
}

TEST_F(PWholeFileTest, what_does_not_fit_on_the_disk_leaves_the_old_file_and_no_other) {
    writeFile(file, "old");
    PStatus status;
    {
        const FileSizeLimit limit(10);
        status = PWholeFile::replace(file, QByteArray(20, 'x'));
    }
    EXPECT_FALSE(status.isOk());
    EXPECT_NE(status.reason(), QString());
    EXPECT_EQ(readFile(file), QByteArray("old"));
    EXPECT_EQ(files(), QStringList{u"a.txt"_qs});
}

TEST_F(PWholeFileTest, a_folder_that_is_not_there_is_a_failure_with_its_reason) {
    const PStatus status = PWholeFile::replace(path(u"none/a.txt"_qs), "text");
    EXPECT_FALSE(status.isOk());
    EXPECT_NE(status.reason(), QString());
}

TEST_F(PWholeFileTest, writes_all_or_says_that_it_did_not) {
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_TRUE(PWholeFile::writeAll(out, "12345"));
    EXPECT_EQ(readFile(file), QByteArray("12345"));
    const FileSizeLimit limit(8);
    EXPECT_FALSE(PWholeFile::writeAll(out, "6789abc"));
    EXPECT_NE(out.errorString(), QString());
}

} // namespace
