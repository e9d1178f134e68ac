// SPDX-License-Identifier: MIT
#include <apps/common/file/PUnnamedFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Before = PUnnamedFile::Before;

struct BeforeRow {
    const char* name;
    Before before;
};

class UnnamedFile : public FolderTest, public WithRow<BeforeRow> {
protected:
    const QString name = path(u"run.tif"_qs);

    ~UnnamedFile() override {
        if (descriptor >= 0)
            close(descriptor);
    }
    void create(PUnnamedFile& file) {
        descriptor = file.create(name, GetParam().before);
        ASSERT_GE(descriptor, 0) << errno;
        ASSERT_EQ(write(descriptor, "abc", 3), 3);
    }
    /// The files that look like results.
    QStringList shownFiles() const { return QDir(path(QString())).entryList(QDir::Files); }
    QStringList allFiles() const {
        return QDir(path(QString())).entryList(QDir::Files | QDir::Hidden);
    }

    int descriptor = -1;
};

ROW_TEST(UnnamedFile, shows_no_file_before_it_has_its_name) {
    PUnnamedFile file;
    create(file);
    EXPECT_EQ(shownFiles(), QStringList());
    EXPECT_FALSE(file.hasName());
}

ROW_TEST(UnnamedFile, is_the_only_file_once_it_has_its_name) {
    PUnnamedFile file;
    create(file);
    EXPECT_EQ(file.giveName(descriptor), 0);
    EXPECT_TRUE(file.hasName());
    EXPECT_EQ(allFiles(), QStringList(u"run.tif"_qs));
    EXPECT_EQ(readFile(name), QByteArray("abc"));
}

ROW_TEST(UnnamedFile, is_gone_without_a_name) {
    {
        PUnnamedFile file;
        create(file);
    }
    EXPECT_EQ(allFiles(), QStringList());
}

ROW_TEST(UnnamedFile, leaves_a_file_alone_that_has_got_the_name_meanwhile) {
    {
        PUnnamedFile file;
        create(file);
        writeFile(name, "mine");
        EXPECT_EQ(file.giveName(descriptor), EEXIST);
        EXPECT_FALSE(file.hasName());
    }
    EXPECT_EQ(allFiles(), QStringList(u"run.tif"_qs));
    EXPECT_EQ(readFile(name), QByteArray("mine"));
}

ROW_TEST(UnnamedFile, has_the_permissions_of_any_new_file) {
    PUnnamedFile file;
    create(file);
    ASSERT_EQ(file.giveName(descriptor), 0);
    writeFile(path(u"other"_qs), "abc");
    EXPECT_EQ(QFileInfo(name).permissions(), QFileInfo(path(u"other"_qs)).permissions());
}

ROWS(Before, UnnamedFile, BeforeRow{"without_a_name", Before::Unnamed},
     BeforeRow{"with_a_hidden_name", Before::Hidden});

using UnnamedFileCreate = FolderTest;

TEST_F(UnnamedFileCreate, refuses_a_name_that_exists) {
    writeFile(path(u"mine"_qs), "mine");
    EXPECT_EQ(PUnnamedFile().create(path(u"mine"_qs)), -1);
    EXPECT_EQ(errno, EEXIST);
}

TEST_F(UnnamedFileCreate, refuses_the_name_of_a_link_that_leads_nowhere) {
    ASSERT_TRUE(QFile::link(path(u"nowhere"_qs), path(u"link"_qs)));
    EXPECT_EQ(PUnnamedFile().create(path(u"link"_qs)), -1);
    EXPECT_EQ(errno, EEXIST);
}

TEST_F(UnnamedFileCreate, gives_the_reason_for_a_folder_that_does_not_exist) {
    EXPECT_EQ(PUnnamedFile().create(path(u"none/a.tif"_qs)), -1);
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
