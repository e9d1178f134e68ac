// SPDX-License-Identifier: MIT
#include <apps/common/system/PSystemTree.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

namespace {

class PSystemTreeTest : public FolderTest {
protected:
    ~PSystemTreeTest() override { qunsetenv("PCD_SYSTEM_ROOT"); }
};

TEST_F(PSystemTreeTest, without_a_folder_is_the_system_itself) {
    EXPECT_TRUE(PSystemTree().isSystem());
    EXPECT_EQ(PSystemTree().path(u"proc/meminfo"_qs), u"/proc/meminfo"_qs);
    EXPECT_TRUE(PSystemTree::fromEnvironment().isSystem());
}

TEST_F(PSystemTreeTest, the_environment_names_another_folder) {
    qputenv("PCD_SYSTEM_ROOT", path(u"tree"_qs).toUtf8());
    EXPECT_FALSE(PSystemTree::fromEnvironment().isSystem());
    EXPECT_EQ(PSystemTree::fromEnvironment().path(u"sys"_qs), path(u"tree/sys"_qs));
}

TEST_F(PSystemTreeTest, a_text_is_read_without_blanks_around_it) {
    writeFile(path(u"speed"_qs), " 480\n");
    EXPECT_EQ(PSystemTree(path(QString())).readText(u"speed"_qs), u"480"_qs);
}

TEST_F(PSystemTreeTest, a_file_that_is_not_there_has_no_text) {
    EXPECT_EQ(PSystemTree(path(QString())).readText(u"speed"_qs), QString());
}

} // namespace
