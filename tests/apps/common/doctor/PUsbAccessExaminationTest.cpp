// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PUsbAccessExamination.h>

#include <support/FileRights.h>
#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

#include <QFile>

namespace {

using Severity = PFinding::Severity;

class PUsbAccessExaminationTest : public FolderTest {
protected:
    /// The only finding.
    PFinding examine(bool wereCamerasFound) const {
        const FileRightsApply rights;
        const QList<PFinding> findings =
            PUsbAccessExamination(PSystemTree(path(QString())), wereCamerasFound).run();
        return findings.size() == 1 ? findings.first() : PFinding();
    }
    /// Adds a camera that only others may open.
    QString addLocked() {
        const QString node = made.addUsb({});
        QFile::setPermissions(node, {});
        return node;
    }

    MadeSystem made{path(QString())};
};

TEST_F(PUsbAccessExaminationTest, a_device_that_can_be_opened_is_well) {
    made.addUsb({});
    const PFinding finding = examine(false);
    EXPECT_EQ(finding.severity, Severity::Ok);
    EXPECT_EQ(finding.examined, u"1234:5678 (Made-up camera), port 1-2"_qs);
    EXPECT_EQ(finding.found, u"this user can open it"_qs);
}

TEST_F(PUsbAccessExaminationTest, one_that_cannot_is_an_error_without_a_camera_and_lacks_a_rule) {
    const QString node = addLocked();
    const PFinding finding = examine(false);
    EXPECT_EQ(finding.severity, Severity::Error);
    EXPECT_EQ(finding.found, u"this user cannot open \"%1\": Permission denied"_qs.arg(node));
    EXPECT_TRUE(finding.fix.startsWith(u"There is no udev rule for it: run \"pcdctl doctor --udev "
                                       "1234:5678 | sudo tee /etc/udev/rules.d/"_qs))
        << finding.fix.toStdString();
}

TEST_F(PUsbAccessExaminationTest, one_that_cannot_is_a_warning_if_cameras_were_found) {
    addLocked();
    EXPECT_EQ(examine(true).severity, Severity::Warning);
}

TEST_F(PUsbAccessExaminationTest, a_rule_that_has_no_effect_is_named) {
    addLocked();
    made.write(u"etc/udev/rules.d/70-made-up.rules"_qs,
               R"(ATTR{idVendor}=="1234", ATTR{idProduct}=="5678", TAG+="uaccess")");
    EXPECT_TRUE(examine(false).fix.startsWith(
        u"The rule in \"%1\" is not applied: run \"sudo udevadm control --reload\""_qs.arg(
            path(u"etc/udev/rules.d/70-made-up.rules"_qs))))
        << examine(false).fix.toStdString();
}

TEST_F(PUsbAccessExaminationTest, a_device_without_its_file_is_named) {
    QFile::remove(made.addUsb({}));
    const PFinding finding = examine(false);
    EXPECT_EQ(finding.severity, Severity::Error);
    EXPECT_TRUE(finding.found.endsWith(u"No such file or directory"_qs));
    EXPECT_TRUE(finding.fix.startsWith(u"Unplug the device"_qs)) << finding.fix.toStdString();
}

TEST_F(PUsbAccessExaminationTest, an_empty_bus_is_a_warning) {
    EXPECT_EQ(examine(false).severity, Severity::Warning);
    EXPECT_EQ(examine(false).found, u"no device is connected"_qs);
}

TEST_F(PUsbAccessExaminationTest,
       without_a_possible_camera_is_a_warning_unless_cameras_were_found) {
    MadeSystem::Usb keyboard;
    keyboard.interfaceClass = u"03"_qs;
    made.addUsb(keyboard);
    EXPECT_EQ(examine(false).severity, Severity::Warning);
    EXPECT_EQ(examine(false).found,
              u"1 connected, none of which can be a camera that needs an SDK"_qs);
    EXPECT_FALSE(examine(false).fix.isEmpty());
    EXPECT_EQ(examine(true).severity, Severity::Note);
}

} // namespace
