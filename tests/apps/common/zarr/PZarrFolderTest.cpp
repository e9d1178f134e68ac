// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrFolder.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

#include <cerrno>

namespace {

class ZarrFolder : public FolderTest {
protected:
    const QString wanted = path(u"a"_qs);

    QStringList names() const {
        return QDir(path(QString()))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};

TEST_F(ZarrFolder, is_hidden_until_it_gets_its_name) {
    PZarrFolder folder;
    EXPECT_FALSE(folder.isCreated());
    ASSERT_TRUE(folder.create(wanted).isOk());
    EXPECT_TRUE(folder.isCreated());
    EXPECT_FALSE(folder.hasName());
    writeFile(folder.path(u"file"_qs), "content");
    ASSERT_EQ(names().size(), 1);
    EXPECT_TRUE(names().front().startsWith(u'.')) << names().front().toStdString();
    EXPECT_TRUE(names().front().endsWith(u".part"_qs)) << names().front().toStdString();
    ASSERT_TRUE(folder.giveName().isOk());
    EXPECT_TRUE(folder.hasName());
    EXPECT_EQ(names(), QStringList(u"a"_qs));
    EXPECT_EQ(folder.path(u"file"_qs), wanted + u"/file"_qs);
    EXPECT_EQ(readFile(folder.path(u"file"_qs)), QByteArray("content"));
}

TEST_F(ZarrFolder, without_a_name_it_is_removed_with_what_is_in_it) {
    {
        PZarrFolder folder;
        ASSERT_TRUE(folder.create(wanted).isOk());
        writeFile(folder.path(u"file"_qs), "content");
    }
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ZarrFolder, with_its_name_it_stays) {
    {
        PZarrFolder folder;
        ASSERT_TRUE(folder.create(wanted).isOk());
        ASSERT_TRUE(folder.giveName().isOk());
        folder.discard();
    }
    EXPECT_EQ(names(), QStringList(u"a"_qs));
}

TEST_F(ZarrFolder, something_that_has_the_name_is_left_alone) {
    const auto refuses = [&] {
        PZarrFolder folder;
        EXPECT_EQ(folder.create(wanted).reason(), qt_error_string(EEXIST));
        EXPECT_FALSE(folder.isCreated());
    };
    writeFile(wanted, "mine");
    refuses();
    EXPECT_EQ(readFile(wanted), QByteArray("mine"));
    QFile::remove(wanted);
    ASSERT_TRUE(QFile::link(path(u"none"_qs), wanted));
    refuses();
    EXPECT_EQ(names(), QStringList(u"a"_qs));
}

TEST_F(ZarrFolder, something_that_has_got_the_name_meanwhile_is_left_alone) {
    PZarrFolder folder;
    ASSERT_TRUE(folder.create(wanted).isOk());
    ASSERT_TRUE(QDir().mkdir(wanted));
    EXPECT_EQ(folder.giveName().reason(), qt_error_string(EEXIST));
    EXPECT_FALSE(folder.hasName());
    folder.discard();
    EXPECT_EQ(names(), QStringList(u"a"_qs));
}

TEST_F(ZarrFolder, a_folder_that_does_not_exist_is_the_reason_for_a_failure) {
    PZarrFolder folder;
    EXPECT_EQ(folder.create(path(u"none/a"_qs)).reason(), qt_error_string(ENOENT));
}

} // namespace
