// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashFolder.h>

#include <apps/common/crash/StateFolder.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace {

class PCrashFolderTest : public FolderTest {
protected:
    const StateFolder state{path(QString())};

    /// Adds reports 0, 1, 2 … each a second newer than the one before.
    void addReports(int count) const {
        ASSERT_TRUE(QDir().mkpath(PCrashFolder::path()));
        const QDateTime first = QDateTime::currentDateTimeUtc().addSecs(-count);
        for (int i = 0; i < count; ++i) {
            const QString name = QDir(PCrashFolder::path()).filePath(u"%1.txt"_qs.arg(i));
            writeFile(name, "a report");
            QFile file(name);
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            ASSERT_TRUE(file.setFileTime(first.addSecs(i), QFileDevice::FileModificationTime));
        }
    }
    static QStringList names() {
        QStringList found;
        for (const QString& report : PCrashFolder::reports())
            found.append(QFileInfo(report).fileName());
        return found;
    }
};

TEST_F(PCrashFolderTest, it_is_below_the_folder_for_state) {
    EXPECT_EQ(PCrashFolder::path(), QDir::cleanPath(path(u"pcd/crashes"_qs)));
}

TEST_F(PCrashFolderTest, without_a_usable_folder_for_state_it_is_below_the_home_folder) {
    const QString usual = QDir::home().filePath(u".local/state/pcd/crashes"_qs);
    for (const char* given : {"", "relative/path"}) {
        const StateFolder other(QString::fromLatin1(given));
        EXPECT_EQ(PCrashFolder::path(), usual) << given;
    }
}

TEST_F(PCrashFolderTest, looking_at_it_does_not_create_it) {
    PCrashFolder::removeOld();
    EXPECT_EQ(names(), QStringList());
    EXPECT_FALSE(QFileInfo::exists(PCrashFolder::path()));
}

TEST_F(PCrashFolderTest, reports_are_listed_newest_first) {
    addReports(3);
    EXPECT_EQ(names(), (QStringList{u"2.txt"_qs, u"1.txt"_qs, u"0.txt"_qs}));
}

TEST_F(PCrashFolderTest, of_many_reports_the_newest_ten_are_kept) {
    addReports(12);
    PCrashFolder::removeOld();
    const QStringList kept = names();
    ASSERT_EQ(kept.size(), PCrashFolder::mostReports);
    EXPECT_EQ(kept.first(), u"11.txt"_qs);
    EXPECT_EQ(kept.last(), u"2.txt"_qs);
}

TEST_F(PCrashFolderTest, files_that_are_no_reports_stay) {
    addReports(12);
    const QString other = QDir(PCrashFolder::path()).filePath(u"notes.md"_qs);
    writeFile(other, "mine");
    PCrashFolder::removeOld();
    EXPECT_EQ(readFile(other), "mine");
}

} // namespace
