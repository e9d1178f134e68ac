// SPDX-License-Identifier: MIT
#include <apps/common/file/PResultFile.h>

#include <support/FileRights.h>
#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace {

class PResultFileTest : public FolderTest {
protected:
    const QString file = path(u"report.txt"_qs);

    static QString cannotWrite(const QString& path, const QString& reason) {
        return u"cannot write \"%1\": %2"_qs.arg(path, reason);
    }
    /// What check() and write() say; they agree.
    static QString findProblem(const QString& path) {
        const QString checked = PResultFile::check(path).reason();
        EXPECT_EQ(PResultFile::write(path, "new").reason(), checked);
        return checked;
    }
};

TEST_F(PResultFileTest, is_made_and_replaced) {
    EXPECT_EQ(findProblem(file), QString());
    EXPECT_EQ(PResultFile::write(file, "newer").reason(), QString());
    EXPECT_EQ(readFile(file), "newer");
}

TEST_F(PResultFileTest, checking_a_name_leaves_nothing_there) {
    EXPECT_TRUE(PResultFile::check(file).isOk());
    EXPECT_TRUE(
        QDir(path(QString())).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(PResultFileTest, in_a_folder_that_is_not_there_is_refused) {
    const QString lost = path(u"none/report.txt"_qs);
    EXPECT_EQ(findProblem(lost), cannotWrite(lost, u"No such file or directory"_qs));
}

TEST_F(PResultFileTest, in_a_folder_of_others_is_refused) {
    QFile::setPermissions(path(QString()), QFile::ReadOwner | QFile::ExeOwner);
    const FileRightsApply forThisThread;
    const QString problem = findProblem(file);
    QFile::setPermissions(path(QString()), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(problem, cannotWrite(file, u"Permission denied"_qs));
}

TEST_F(PResultFileTest, replaces_no_folder) {
    ASSERT_TRUE(QDir().mkdir(file));
    EXPECT_EQ(findProblem(file), cannotWrite(file, u"it is not a file"_qs));
}

TEST_F(PResultFileTest, replaces_no_pipe_and_no_device) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(findProblem(file), cannotWrite(file, u"it is not a file"_qs));
    struct stat found {};
    ASSERT_EQ(::stat(QFile::encodeName(file).constData(), &found), 0);
    EXPECT_TRUE(S_ISFIFO(found.st_mode));
}

TEST_F(PResultFileTest, with_a_name_that_is_too_long_is_refused) {
    const QString longName = path(QString(252, u'x'));
    EXPECT_EQ(findProblem(longName), cannotWrite(longName, u"File name too long"_qs));
    EXPECT_EQ(findProblem(path(QString(248, u'x'))), QString());
}

TEST_F(PResultFileTest, that_does_not_fit_on_the_disk_leaves_the_old_one) {
    writeFile(file, "old");
    PStatus status;
    {
        const FileSizeLimit limit(10);
        status = PResultFile::write(file, QByteArray(20, 'x'));
    }
    EXPECT_TRUE(status.reason().startsWith(cannotWrite(file, QString())))
        << status.reason().toStdString();
    EXPECT_EQ(readFile(file), "old");
}

} // namespace
