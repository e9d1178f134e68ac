// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PHolderExamination.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

namespace {

using Severity = PFinding::Severity;

class PHolderExaminationTest : public FolderTest {
protected:
    QList<PFinding> examine() const {
        return PHolderExamination(PSystemTree(path(QString()))).run();
    }

    MadeSystem made{path(QString())};
};

TEST_F(PHolderExaminationTest, programs_that_have_the_camera_open_are_a_warning) {
    const QString node = made.addUsb({});
    made.addHolder(77, "capture\n", node);
    made.addHolder(78, "viewer\n", node);
    const QList<PFinding> findings = examine();
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings.first().severity, Severity::Warning);
    EXPECT_EQ(findings.first().examined, u"1234:5678 (Made-up camera), port 1-2"_qs);
    EXPECT_EQ(findings.first().found, u"is open in capture (process 77), viewer (process 78); a "
                                      "camera works with one program at a time"_qs);
    EXPECT_EQ(findings.first().fix,
              u"Close capture (process 77), viewer (process 78), then try again."_qs);
}

TEST_F(PHolderExaminationTest, a_camera_that_nobody_uses_is_well) {
    made.addUsb({});
    made.addHolder(77, "capture\n", path(u"another file"_qs));
    const QList<PFinding> findings = examine();
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings.first().severity, Severity::Ok);
}

TEST_F(PHolderExaminationTest, other_devices_are_not_examined) {
    MadeSystem::Usb keyboard;
    keyboard.interfaceClass = u"03"_qs;
    made.addHolder(77, "desktop\n", made.addUsb(keyboard));
    EXPECT_TRUE(examine().isEmpty());
}

} // namespace
