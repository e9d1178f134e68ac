// SPDX-License-Identifier: MIT
#include <apps/common/system/PDiskSpeed.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>

namespace {

class PDiskSpeedTest : public FolderTest {
protected:
    QStringList files() const {
        return QDir(path(QString()))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

TEST_F(PDiskSpeedTest, is_measured_and_leaves_no_file) {
    const PDiskSpeed::Result result = PDiskSpeed::measure(path(QString()));
    EXPECT_TRUE(result.status.isOk()) << result.status.reason().toStdString();
    EXPECT_GT(result.megabytesPerSecond, 0);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(PDiskSpeedTest, a_folder_that_is_not_there_fails_with_the_systems_reason) {
    const PDiskSpeed::Result result = PDiskSpeed::measure(path(u"nothing"_qs));
    EXPECT_FALSE(result.status.isOk());
    EXPECT_EQ(result.status.reason(), u"No such file or directory"_qs);
}

TEST_F(PDiskSpeedTest, a_disk_that_takes_no_more_fails_and_leaves_no_file) {
    const FileSizeLimit limit(1000);
    const PDiskSpeed::Result result = PDiskSpeed::measure(path(QString()));
    EXPECT_FALSE(result.status.isOk());
    EXPECT_EQ(result.status.reason(), u"File too large"_qs);
    EXPECT_EQ(files(), QStringList());
}

} // namespace
