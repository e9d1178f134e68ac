// SPDX-License-Identifier: MIT
#include <apps/common/system/PFileHolders.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

class PFileHoldersTest : public FolderTest {
protected:
    MadeSystem made{path(QString())};
    const PSystemTree tree{path(QString())};
    const QString node = made.addUsb({});
};

TEST_F(PFileHoldersTest, programs_that_have_the_file_open_are_named) {
    made.addHolder(4321, "viewer\n", node);
    made.addHolder(5432, "other\n", node + u"0"_qs);
    const QList<PFileHolder> holders = PFileHolders::find(tree, node);
    ASSERT_EQ(holders.size(), 1);
    EXPECT_EQ(holders.first().process, 4321);
    EXPECT_EQ(holders.first().program, u"viewer"_qs);
}

TEST_F(PFileHoldersTest, this_program_does_not_count) {
    made.addHolder(int(QCoreApplication::applicationPid()), "test", node);
    EXPECT_TRUE(PFileHolders::find(tree, node).isEmpty());
}

TEST_F(PFileHoldersTest, folders_that_are_no_processes_do_not_count) {
    made.write(u"proc/self/comm"_qs, "test");
    ASSERT_TRUE(QDir(path(u"proc/self"_qs)).mkpath(u"fd"_qs));
    ASSERT_TRUE(QFile::link(node, path(u"proc/self/fd/3"_qs)));
    EXPECT_TRUE(PFileHolders::find(tree, node).isEmpty());
}

} // namespace
