// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PStorageExamination.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

namespace {

using Severity = PFinding::Severity;

constexpr quint64 mostBytesWaiting = 2'000'000'000;

class PStorageExaminationTest : public FolderTest {
protected:
    PStorageExamination examination(std::optional<double> cameraRate,
                                    const QString& folder = QString()) const {
        return PStorageExamination(PSystemTree(path(QString())), path(folder), cameraRate,
                                   mostBytesWaiting);
    }

    MadeSystem made{path(QString())};
};

TEST_F(PStorageExaminationTest, a_disk_as_fast_as_the_camera_is_well) {
    const PFinding finding = examination(100).judge({PStatus::Ok, 100});
    EXPECT_EQ(finding.severity, Severity::Ok);
    EXPECT_EQ(finding.found, u"writes 100 MB/s, the camera sends 100 MB/s"_qs);
}

TEST_F(PStorageExaminationTest, a_slower_disk_is_a_warning) {
    const PFinding finding = examination(100).judge({PStatus::Ok, 9.94});
    EXPECT_EQ(finding.severity, Severity::Warning);
    EXPECT_EQ(finding.found,
              u"writes 9.9 MB/s, the camera sends 100 MB/s: long recordings will not "
              "keep up"_qs);
    EXPECT_FALSE(finding.fix.isEmpty());
}

TEST_F(PStorageExaminationTest, without_the_cameras_rate_the_speed_is_a_note) {
    const PFinding finding = examination(std::nullopt).judge({PStatus::Ok, 5});
    EXPECT_EQ(finding.severity, Severity::Note);
    EXPECT_EQ(finding.found, u"writes 5.0 MB/s; the camera's rate is not known"_qs);
}

TEST_F(PStorageExaminationTest, a_folder_that_cannot_be_written_is_an_error) {
    const QList<PFinding> findings = examination(100, u"nothing"_qs).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.last().severity, Severity::Error);
    EXPECT_EQ(findings.last().examined, path(u"nothing"_qs));
    EXPECT_EQ(findings.last().found, u"cannot write there: No such file or directory"_qs);
}

TEST_F(PStorageExaminationTest, enough_memory_is_well_and_shown_in_seconds_of_the_camera) {
    made.setAvailableMemory(mostBytesWaiting);
    const QList<PFinding> findings = examination(100, u"nothing"_qs).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.first().severity, Severity::Ok);
    EXPECT_EQ(findings.first().found, u"2000 MB available; up to 2000 MB are used for frames that "
                                      "wait for the disk, which is 20.0 s of this camera"_qs);
}

TEST_F(PStorageExaminationTest, less_memory_than_may_wait_is_a_warning) {
    made.setAvailableMemory(mostBytesWaiting - 1024);
    const QList<PFinding> findings = examination(std::nullopt, u"nothing"_qs).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.first().severity, Severity::Warning);
    EXPECT_EQ(findings.first().found,
              u"2000 MB available; up to 2000 MB are used for frames that wait for the disk"_qs);
    EXPECT_FALSE(findings.first().fix.isEmpty());
}

TEST_F(PStorageExaminationTest, memory_that_the_system_does_not_report_is_a_note) {
    made.write(u"proc/meminfo"_qs, "\n");
    const QList<PFinding> findings = examination(100, u"nothing"_qs).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.first().severity, Severity::Note);
}

} // namespace
