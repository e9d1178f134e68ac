// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashFacts.h>

#include <apps/common/crash/StateFolder.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <unistd.h>

namespace {

PCrashFacts gather(std::vector<const char*> arguments) {
    return PCrashFacts::gather(int(arguments.size()), arguments.data(), u"1.2.3"_qs);
}

class PCrashFactsTest : public FolderTest {
protected:
    const StateFolder state{path(u"state"_qs)};
};

TEST_F(PCrashFactsTest, the_path_names_the_program_and_the_process) {
    const QByteArray file = gather({"program"}).path;
    EXPECT_TRUE(file.startsWith(path(u"state/pcd/crashes/test_apps_common-"_qs).toUtf8()))
        << file.toStdString();
    EXPECT_TRUE(file.endsWith('-' + QByteArray::number(::getpid()) + ".txt")) << file.toStdString();
}

TEST_F(PCrashFactsTest, all_folders_above_the_report_come_before_its_own) {
    const std::vector<QByteArray> folders = gather({"program"}).folders;
    ASSERT_GE(folders.size(), 3U);
    EXPECT_EQ(folders.back(), path(u"state/pcd/crashes"_qs).toUtf8());
    EXPECT_EQ(folders[folders.size() - 2], path(u"state/pcd"_qs).toUtf8());
    EXPECT_EQ(folders[folders.size() - 3], path(u"state"_qs).toUtf8());
    EXPECT_EQ(folders.front().count('/'), 1);
}

TEST_F(PCrashFactsTest, the_header_has_versions_and_the_command) {
    const QByteArray header = gather({"program", "list", "--json"}).header;
    EXPECT_TRUE(header.startsWith("test_apps_common 1.2.3 was ended by a fault."))
        << header.toStdString();
    EXPECT_TRUE(header.contains("\nCommand: program list --json\n")) << header.toStdString();
    EXPECT_TRUE(header.contains(QByteArray("\nQt: ") + qVersion() + '\n')) << header.toStdString();
    EXPECT_TRUE(header.contains(", kernel ")) << header.toStdString();
    EXPECT_TRUE(header.endsWith("Z\n")) << header.toStdString(); // the time of the start
}

TEST_F(PCrashFactsTest, an_argument_cannot_control_a_terminal) {
    EXPECT_TRUE(gather({"program", "a\nb\x1b[31m"}).header.contains("program a\\nb\\x1b[31m\n"));
}

} // namespace
