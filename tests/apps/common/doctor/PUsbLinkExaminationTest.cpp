// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PUsbLinkExamination.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

namespace {

using Severity = PFinding::Severity;

struct LinkRow {
    std::string name;
    const char16_t* version;
    const char16_t* speed;
    bool hasSuperSpeed;
    Severity severity;
    const char16_t* found;
};

class UsbLink : public FolderTest, public WithRow<LinkRow> {};

ROW_TEST(UsbLink, is_compared_with_the_device) {
    MadeSystem made(path(QString()));
    MadeSystem::Usb device;
    device.version = QString::fromUtf16(GetParam().version);
    device.speed = QString::fromUtf16(GetParam().speed);
    if (GetParam().hasSuperSpeed)
        device.capabilities = superSpeedCapabilities();
    made.addUsb(device);
    const QList<PFinding> findings = PUsbLinkExamination(PSystemTree(path(QString()))).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.first().topic, u"usb-speed"_qs);
    EXPECT_EQ(findings.first().severity, GetParam().severity);
    EXPECT_EQ(findings.first().found, QString::fromUtf16(GetParam().found));
    EXPECT_EQ(findings.first().fix.isEmpty(), GetParam().severity == Severity::Ok);
}

ROWS(Rows, UsbLink,
     LinkRow{"of_usb_2_for_usb_2_is_well", u" 2.00", u"480", false, Severity::Ok,
             u"a link of 480 Mbit/s; the device reports USB 2.0"},
     LinkRow{"of_usb_3_for_usb_3_is_well", u" 3.20", u"5000", true, Severity::Ok,
             u"a link of 5000 Mbit/s; the device reports USB 3.2"},
     LinkRow{"of_usb_1_for_usb_2_is_slow", u" 2.00", u"12", false, Severity::Warning,
             u"a link of 12 Mbit/s; the device reports USB 2.0, and can use 480 "
             u"Mbit/s"},
     LinkRow{"of_usb_2_for_usb_3_is_slow", u" 2.10", u"480", true, Severity::Warning,
             u"a link of 480 Mbit/s; the device reports USB 2.1, and can use 5000 "
             u"Mbit/s"},
     LinkRow{"of_usb_2_for_what_reports_usb_3_is_slow", u" 3.00", u"480", false, Severity::Warning,
             u"a link of 480 Mbit/s; the device reports USB 3.0, and can use 5000 "
             u"Mbit/s"},
     LinkRow{"of_usb_2_for_what_may_be_usb_3_is_a_note", u" 2.10", u"480", false, Severity::Note,
             u"a link of 480 Mbit/s; the device reports USB 2.1: it may be one for "
             u"USB 3"},
     LinkRow{"of_usb_1_for_usb_1_is_well", u" 1.10", u"12", false, Severity::Ok,
             u"a link of 12 Mbit/s; the device reports USB 1.1"});

class PUsbLinkExaminationTest : public FolderTest {
protected:
    /// Adds a device that is no camera.
    void addOther(const QString& port, const QString& speed,
                  const QString& deviceClass = u"00"_qs) {
        MadeSystem::Usb other;
        other.port = port;
        other.product = u"0001"_qs;
        other.name = u"Made-up disk"_qs;
        other.speed = speed;
        other.deviceClass = deviceClass;
        other.interfaceClass = u"08"_qs;
        made.addUsb(other);
    }
    PFinding examineBandwidth() const {
        const QList<PFinding> findings = PUsbLinkExamination(PSystemTree(path(QString()))).run();
        return findings.size() == 2 ? findings.last() : PFinding();
    }

    MadeSystem made{path(QString())};
};

TEST_F(PUsbLinkExaminationTest, a_fast_neighbour_on_the_same_hub_is_a_warning) {
    made.addUsb({u"1-2.1"_qs});
    addOther(u"1-2.4"_qs, u"480"_qs);
    const PFinding finding = examineBandwidth();
    EXPECT_EQ(finding.topic, u"usb-bandwidth"_qs);
    EXPECT_EQ(finding.severity, Severity::Warning);
    EXPECT_EQ(finding.found,
              u"shares port 1-2 of the computer through a hub with 1234:0001 (Made-up "
              "disk), port 1-2.4"_qs);
    EXPECT_FALSE(finding.fix.isEmpty());
}

TEST_F(PUsbLinkExaminationTest, a_neighbour_behind_another_hub_of_that_port_counts_too) {
    made.addUsb({u"1-2.1"_qs});
    addOther(u"1-2.4.3"_qs, u"480"_qs);
    EXPECT_EQ(examineBandwidth().severity, Severity::Warning);
}

TEST_F(PUsbLinkExaminationTest, slow_neighbours_hubs_and_other_ports_do_not_count) {
    made.addUsb({u"1-2.1"_qs});
    addOther(u"1-2.2"_qs, u"12"_qs);
    addOther(u"1-2"_qs, u"480"_qs, u"09"_qs);
    addOther(u"1-3"_qs, u"480"_qs);
    addOther(u"2-2.1"_qs, u"5000"_qs);
    const PFinding finding = examineBandwidth();
    EXPECT_EQ(finding.topic, u"usb-bandwidth"_qs);
    EXPECT_EQ(finding.severity, Severity::Ok) << finding.found.toStdString();
}

TEST_F(PUsbLinkExaminationTest, without_a_possible_camera_finds_nothing) {
    addOther(u"1-3"_qs, u"12"_qs);
    EXPECT_TRUE(PUsbLinkExamination(PSystemTree(path(QString()))).run().isEmpty());
}

} // namespace
