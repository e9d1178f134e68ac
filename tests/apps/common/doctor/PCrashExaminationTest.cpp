// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PCrashExamination.h>

#include <apps/common/crash/StateFolder.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>

namespace {

class PCrashExaminationTest : public FolderTest {
protected:
    const StateFolder state{path(QString())};
};

TEST_F(PCrashExaminationTest, without_reports_there_is_nothing_to_say) {
    EXPECT_EQ(PCrashExamination::run().size(), 0);
}

TEST_F(PCrashExaminationTest, the_newest_report_is_named) {
    ASSERT_TRUE(QDir(path(QString())).mkpath(u"pcd/crashes"_qs));
    const QString report = QDir::cleanPath(path(u"pcd/crashes/pcdctl-20260102-030405-7.txt"_qs));
    writeFile(report, "a report");
    const QList<PFinding> findings = PCrashExamination::run();
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings.first().severity, PFinding::Severity::Note);
    EXPECT_EQ(findings.first().topic, u"crash"_qs);
    EXPECT_EQ(findings.first().found, u"1, the newest is "_qs + report);
    EXPECT_NE(findings.first().fix, QString());
}

} // namespace
