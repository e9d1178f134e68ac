// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlFiles.h>
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FileRights.h>
#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QFile>

#include <utility>

namespace {

const QString doctorWord = u"doctor"_qs;

/// A system in which all is well, with one simulated camera, until a test breaks something.
class Doctor : public FolderTest {
protected:
    Doctor() { QDir(path(QString())).mkdir(u"out"_qs); }

    CtlResult run(const QStringList& arguments) {
        QStringList all{doctorWord, u"--folder"_qs, folder, u"--rate"_qs, rate, u"--sdk"_qs, sdk};
        if (!scene.isEmpty())
            all += {u"--scene"_qs, scene};
        return runCtl(all + arguments, [this](CtlProcess& process) { prepare(process); });
    }
    void prepare(CtlProcess& process) const {
        process.with(u"PCD_SYSTEM_ROOT"_qs, made.root()).with([] { FileRightsApply::forGood(); });
        process.with(u"XDG_STATE_HOME"_qs, path(u"state"_qs)); // without reports
        for (const auto& [name, value] : environment)
            process.with(name, value);
    }

public: // for the rows
    using FolderTest::path;

    /// Leaves the file of a device to others.
    void lock(const QString& node) { QFile::setPermissions(node, {}); }
    /// A copy of a plugin whose mark says that it was built for Qt 6.99.
    QString makeLaterPlugin() {
        QByteArray library = readFile(QStringLiteral(LAB_PLUGIN));
        const qsizetype owner = library.indexOf(QByteArray("qt-project!\0", 12));
        if (owner >= 0)
            library[owner + 14] = 99;
        writeFile(path(u"later.so"_qs), library);
        return path(u"later.so"_qs);
    }

    MadeSystem made{path(u"tree"_qs)};
    QString scene = CtlScene().addCamera().writeTo(path(u"scene.json"_qs));
    QString sdk = u"sim"_qs;
    QString folder = path(u"out"_qs);
    QString rate = u"0.001"_qs;
    QStringList more;
    QList<std::pair<QString, QString>> environment;
};

struct DoctorRow {
    const char* name;
    std::function<void(Doctor&)> change;
    int exitCode;
    const char* line; ///< the beginning of the line with the finding
    const char* found;
    const char* fix; ///< empty: none
};

class Finding : public Doctor, public WithRow<DoctorRow> {};

/// A line and the one after it.
QStringList findLines(const QByteArray& output, const DoctorRow& row) {
    const QStringList lines = QString::fromUtf8(output).split(u'\n');
    for (qsizetype index = 0; index + 1 < lines.size(); ++index) {
        if (lines.at(index).startsWith(QString::fromUtf8(row.line)) &&
            lines.at(index).contains(QString::fromUtf8(row.found)))
            return lines.mid(index, 2);
    }
    return {};
}

ROW_TEST(Finding, is_printed_with_its_fix_and_decides_the_exit_code) {
    GetParam().change(*this);
    const CtlResult result = run(more);
    EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.output.toStdString();
    const QStringList lines = findLines(result.output, GetParam());
    ASSERT_EQ(lines.size(), 2) << result.output.toStdString() << result.errors.toStdString();
    if (*GetParam().fix == '\0')
        EXPECT_FALSE(lines.last().contains(u"  Fix: "_qs)) << lines.last().toStdString();
    else
        EXPECT_TRUE(lines.last().contains(u"  Fix: "_qs + QString::fromUtf8(GetParam().fix)))
            << lines.last().toStdString();
}

const DoctorRow findings[] = {
    {"of_a_system_in_which_all_is_well", [](Doctor&) {}, 0,
     "ok       clock          the time of day: ", "synchronised with a time server", ""},
    {"of_a_simulated_sdk", [](Doctor&) {}, 0, "note     sdk  ", "; the cameras are simulated", ""},
    {"of_a_simulated_camera", [](Doctor&) {}, 0,
     "note     camera         Small-S0001: ", "simulated; streams ", ""},
    {"of_an_sdk_that_is_not_there",
     [](Doctor& test) {
         test.sdk = test.path(u"none.so"_qs);
         test.scene.clear();
     },
     1, "error    sdk  ", "none.so: cannot open shared object file: No such file or directory",
     "Give the path of the maker's library"},
    {"of_an_sdk_that_is_no_library",
     [](Doctor& test) {
         test.sdk = test.path(u"text.so"_qs);
         test.scene.clear();
         writeFile(test.sdk, QByteArray(4096, 'x'));
     },
     1, "error    sdk  ", "text.so: invalid ELF header", "Copy the library again"},
    {"of_a_system_whose_sdk_cannot_be_loaded",
     [](Doctor& test) {
         test.sdk = u"auto"_qs;
         writeFile(test.path(u"libtoupcam.so"_qs), QByteArray(4096, 'x'));
         test.environment = {{u"LD_LIBRARY_PATH"_qs, test.path(QString())}};
     },
     1, "error    sdk  ", "libtoupcam.so: invalid ELF header", "Copy the library again"},
    {"of_a_system_without_an_sdk", [](Doctor& test) { test.sdk = u"auto"_qs; }, 4, "warning  sdk  ",
     "libtoupcam.so: cannot open shared object file", "Install the maker's libtoupcam.so"},
    {"of_functions_that_the_sdk_lacks",
     [](Doctor& test) {
         test.sdk = QStringLiteral(EMPTY_CAMERA_SDK);
         test.scene.clear();
     },
     1, "warning  sdk-functions",
     "functions that the plugin calls, so calls to them fail: Toupcam_Open",
     "Install the newest version of the maker's library."},
    {"of_a_file_that_is_no_plugin",
     [](Doctor& test) {
         writeFile(test.path(u"text.so"_qs), "no plugin");
         test.more = {u"--plugin-path"_qs, test.path(u"text.so"_qs)};
     },
     4, "warning  plugin  ", "text.so: not loaded: ", "Install the plugin again"},
    {"of_a_plugin_path_that_is_wrong",
     [](Doctor& test) {
         test.more = {u"--plugin-path"_qs, test.path(u"none"_qs)};
     },
     4, "warning  plugin  ", "none: not loaded: no such file or folder", "Correct the path"},
    {"of_a_plugin_for_a_later_qt",
     [](Doctor& test) {
         test.more = {u"--plugin-path"_qs, test.makeLaterPlugin()};
     },
     4, "warning  plugin  ", "; it was built for Qt 6.99",
     "Install the version of this plugin that was built for Qt 6."},
    {"of_no_camera_at_all",
     [](Doctor& test) { test.scene = CtlScene().writeTo(test.path(u"empty.json"_qs)); }, 1,
     "error    cameras  ", "no camera found", "Connect the camera"},
    {"of_a_camera_that_is_not_there",
     [](Doctor& test) {
         test.more = {u"-c"_qs, u"Large"_qs};
     },
     1, "error    camera         Large: ", "Large", "Choose one of the cameras with --camera."},
    {"of_a_camera_that_cannot_be_opened",
     [](Doctor& test) {
         test.scene = CtlScene()
                          .addCamera()
                          .addFault(failing(u"Toupcam_Open"_qs))
                          .writeTo(test.path(u"closed.json"_qs));
     },
     1, "warning  cameras        log of the search: ",
     "; PTDevice: PTDeviceRegister: failed to open device, skipping cam-1",
     "If a camera is missing, close other programs that use it"},
    {"of_a_camera_that_does_not_start",
     [](Doctor& test) {
         test.scene = CtlScene()
                          .addCamera()
                          .addFault(failing(u"Toupcam_StartPushMode"_qs))
                          .writeTo(test.path(u"closed.json"_qs));
     },
     1, "error    camera         Small-S0001: ", "it does not start: ", "Close other programs"},
    {"of_a_camera_unplugged_soon_after_a_late_first_frame",
     [](Doctor& test) {
         QJsonObject release = unplugAfter(60); // later than a trial takes
         release.insert(u"do"_qs, u"release"_qs);
         test.scene = CtlScene()
                          .addCamera()
                          .setResolution(320, 240, 100)
                          .addFault(stepAt(0, u"hold"_qs))
                          .addFault(release)
                          .addFault(unplugAfter(64))
                          .writeTo(test.path(u"late.json"_qs));
     },
     1, "error    camera         Small-S0001: ",
     "it does not stream: camera Small-S0001 was unplugged", "Close other programs"},
    {"of_a_camera_that_goes_away",
     [](Doctor& test) {
         test.scene =
             CtlScene().addCamera().addFault(unplugAfter(2)).writeTo(test.path(u"away.json"_qs));
     },
     1, "error    camera         Small-S0001: ",
     "it does not stream: camera Small-S0001 was unplugged", "Close other programs"},
    {"of_a_usb_device_that_may_not_be_opened",
     [](Doctor& test) { test.lock(test.made.addUsb({})); }, 4,
     "warning  usb-access     1234:5678 (Made-up camera), port 1-2: ", "Permission denied",
     "There is no udev rule for it: run \"pcdctl doctor --udev 1234:5678 | sudo tee "
     "/etc/udev/rules.d/70-pcd-camera.rules\""},
    {"of_a_usb_device_that_may_not_be_opened_when_no_camera_was_found",
     [](Doctor& test) {
         test.lock(test.made.addUsb({}));
         test.scene = CtlScene().writeTo(test.path(u"empty.json"_qs));
     },
     1, "error    usb-access     1234:5678 ", "Permission denied", "There is no udev rule for it"},
    {"of_a_udev_rule_without_effect",
     [](Doctor& test) {
         test.lock(test.made.addUsb({}));
         test.made.write(u"etc/udev/rules.d/70-made-up.rules"_qs,
                         R"(ATTR{idVendor}=="1234", ATTR{idProduct}=="5678", MODE="0660")");
     },
     4, "warning  usb-access     1234:5678 ", "Permission denied", "The rule in \""},
    {"of_a_bus_without_a_possible_camera",
     [](Doctor& test) { test.scene = CtlScene().writeTo(test.path(u"empty.json"_qs)); }, 1,
     "warning  usb-access     the USB buses: ", "no device is connected",
     "Connect the camera, switch it on"},
    {"of_a_usb_device_on_a_slow_link",
     [](Doctor& test) {
         MadeSystem::Usb device;
         device.version = u" 2.10"_qs;
         device.capabilities = superSpeedCapabilities();
         test.made.addUsb(device);
     },
     4, "warning  usb-speed      1234:5678 ", "a link of 480 Mbit/s; ",
     "Connect it to a USB 3 port"},
    {"of_a_usb_device_that_shares_a_hub",
     [](Doctor& test) {
         test.made.addUsb({u"1-2.1"_qs, 4});
         test.made.addUsb({u"1-2.2"_qs, 5, u"1234"_qs, u"0001"_qs, u"Made-up disk"_qs});
     },
     4, "warning  usb-bandwidth  1234:5678 ",
     "shares port 1-2 of the computer through a hub with 1234:0001 (Made-up disk), port 1-2.2",
     "Connect the camera to a port of its own"},
    {"of_a_usb_device_that_another_program_uses",
     [](Doctor& test) { test.made.addHolder(4321, "capture", test.made.addUsb({})); }, 4,
     "warning  camera-in-use  1234:5678 ", "is open in capture (process 4321)",
     "Close capture (process 4321)"},
    {"of_a_usb_device_that_is_well", [](Doctor& test) { test.made.addUsb({}); }, 0,
     "ok       camera-in-use  1234:5678 ", "no program of this user has it open", ""},
    {"of_little_memory", [](Doctor& test) { test.made.setAvailableMemory(10'240'000); }, 4,
     "warning  memory  ", "10 MB available; up to ", "Close other programs before you record."},
    {"of_a_disk_slower_than_the_camera", [](Doctor& test) { test.rate = u"1000000"_qs; }, 4,
     "warning  disk  ", ", the camera sends 1000000 MB/s: ", "Record to a faster disk"},
    {"of_a_folder_that_cannot_be_written",
     [](Doctor& test) { test.folder = test.path(u"none"_qs); }, 1, "error    disk  ",
     "none: cannot write there: No such file or directory", "Choose a writable folder"},
    {"of_a_slow_time_source",
     [](Doctor& test) {
         test.made.write(u"sys/devices/system/clocksource/clocksource0/current_clocksource"_qs,
                         "acpi_pm\n");
     },
     4, "warning  clock          the time source: ", "acpi_pm, which is slow",
     "Look for \"clocksource\""},
    {"of_a_clock_that_is_not_synchronised",
     [](Doctor& test) { test.made.write(u"clock-status"_qs, "64\n"); }, 4,
     "warning  clock          the time of day: ", "not synchronised",
     "Switch synchronisation on: sudo timedatectl set-ntp true"},
};

ROWS_IN(Pcdctl, Finding, findings);

TEST_F(Doctor, compares_the_disk_with_what_the_camera_sends) {
    const CtlResult result =
        runCtl({doctorWord, u"--sdk=sim"_qs, u"--scene"_qs, scene, u"--folder"_qs, folder},
               [this](CtlProcess& process) { prepare(process); });
    EXPECT_TRUE(result.output.contains(", the camera sends ")) << result.output.toStdString();
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
}

TEST_F(Doctor, prints_one_json_document_also_if_there_are_errors) {
    made.write(u"clock-status"_qs, "64\n");
    scene = CtlScene().writeTo(path(u"empty.json"_qs));
    const CtlResult result = run({jsonWord});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.json.value(u"worst"_qs), QJsonValue(u"error"_qs))
        << result.output.toStdString();
    QStringList topics;
    for (const QJsonValue& finding : result.json.value(u"findings"_qs).toArray())
        topics.append(finding.toObject().value(u"topic"_qs).toString());
    EXPECT_EQ(topics,
              (QStringList{u"sdk"_qs, u"sdk-functions"_qs, u"qt"_qs, u"plugin"_qs, u"cameras"_qs,
                           u"usb-access"_qs, u"memory"_qs, u"disk"_qs, u"clock"_qs, u"clock"_qs}));
    EXPECT_EQ(result.errors, u"pcdctl: errors: 1, warnings: 2\n"_qs);
}

TEST_F(Doctor, a_scene_that_is_not_there_is_wrong_usage) {
    scene = path(u"none.json"_qs);
    const CtlResult result = run({});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, QByteArray());
}

TEST_F(Doctor, a_report_has_the_findings_without_the_home_folder) {
    folder = path(u"out"_qs);
    environment = {{u"HOME"_qs, folder}};
    const CtlResult result = run({u"--report"_qs, path(u"report.txt"_qs)});
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString();
    EXPECT_TRUE(result.output.contains("disk           " + folder.toUtf8()));
    const QByteArray report = readFile(path(u"report.txt"_qs));
    EXPECT_TRUE(report.startsWith("Program:  pcdctl 0.")) << report.toStdString();
    EXPECT_TRUE(report.contains("\nok       disk           ~: writes ")) << report.toStdString();
    EXPECT_TRUE(report.contains("\nok       clock          the time of day: synchronised"));
    EXPECT_FALSE(report.contains(folder.toUtf8())) << report.toStdString();
}

TEST_F(Doctor, a_report_that_cannot_be_written_fails_and_the_old_one_stays) {
    const QString report = path(u"report.txt"_qs);
    writeFile(report, "old");
    CtlProcess process({doctorWord, u"--sdk=sim"_qs, u"--scene"_qs, scene, u"--rate"_qs, rate,
                        u"--folder"_qs, folder, u"--report"_qs, report});
    prepare(process);
    process.with([] { limitFileSize(100); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray errors = process.errors();
    EXPECT_TRUE(errors.contains("pcdctl: cannot write \"" + report.toUtf8() + "\": "))
        << errors.toStdString();
    EXPECT_EQ(readFile(report), "old");
}

TEST_F(Doctor, a_report_that_could_not_be_written_is_refused_before_anything_is_examined) {
    const QString report = path(u"none/report.txt"_qs);
    const CtlResult result = run({u"--report"_qs, report});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              u"pcdctl: cannot write \"%1\": No such file or directory\n"_qs.arg(report));
    EXPECT_EQ(result.output, QByteArray());
}

/// The rule that is written, without the options of the examination.
class DoctorRule : public Doctor {
protected:
    CtlResult runForRule(const QStringList& arguments) {
        return runCtl(QStringList{doctorWord} + arguments,
                      [this](CtlProcess& process) { prepare(process); });
    }
    static QByteArray rule(const char* product) {
        return QByteArray(
                   "SUBSYSTEM==\"usb\", ENV{DEVTYPE}==\"usb_device\", ATTR{idVendor}==\"1234\", "
                   "ATTR{idProduct}==\"") +
               product + "\", MODE=\"0660\", GROUP=\"plugdev\", TAG+=\"uaccess\"\n";
    }
};

TEST_F(DoctorRule, of_a_device_on_the_bus_goes_to_the_standard_output) {
    made.addUsb({});
    const CtlResult result = runForRule({u"--udev"_qs, u"1234:5678"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, QString());
    EXPECT_TRUE(result.output.startsWith("# ")) << result.output.toStdString();
    EXPECT_TRUE(result.output.endsWith("\n" + rule("5678"))) << result.output.toStdString();
}

TEST_F(DoctorRule, of_a_device_that_is_not_connected_is_written_and_that_is_said) {
    const CtlResult result = runForRule({u"--udev"_qs, u"1234:9ABC"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors,
              u"pcdctl: no device 1234:9abc is connected now; the rule is written anyway\n"_qs);
    EXPECT_TRUE(result.output.endsWith("\n" + rule("9abc"))) << result.output.toStdString();
}

TEST_F(DoctorRule, of_all_possible_cameras_that_are_found_has_each_product_once) {
    made.addUsb({});
    made.addUsb({u"1-3"_qs, 5, u"1234"_qs, u"0001"_qs});
    made.addUsb({u"1-4"_qs, 6, u"1234"_qs, u"0001"_qs});
    MadeSystem::Usb keyboard;
    keyboard.port = u"1-5"_qs;
    keyboard.product = u"0002"_qs;
    keyboard.interfaceClass = u"03"_qs;
    made.addUsb(keyboard);
    const CtlResult result = runForRule({u"--udev=found"_qs, u"--udev=1234:5678"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.endsWith("\n" + rule("5678") + rule("0001")))
        << result.output.toStdString();
    EXPECT_EQ(result.output.count("SUBSYSTEM=="), 2) << result.output.toStdString();
}

TEST_F(DoctorRule, of_nothing_that_is_found_is_no_such_camera) {
    const CtlResult result = runForRule({u"--udev=found"_qs});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.contains(u"no USB device on the bus can be a camera"_qs));
}

TEST_F(DoctorRule, goes_to_a_file) {
    made.addUsb({});
    const QString file = path(u"70-a.rules"_qs);
    const CtlResult result = runForRule({u"--udev=1234:5678"_qs, u"--rule-file"_qs, file});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(readFile(file).endsWith("\n" + rule("5678")));
}

TEST_F(DoctorRule, that_cannot_be_written_fails_with_the_file_and_the_reason) {
    const QString file = path(u"none/70-a.rules"_qs);
    const CtlResult result = runForRule({u"--udev=1234:5678"_qs, u"--rule-file"_qs, file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"cannot write \"%1\": "_qs.arg(file)))
        << result.errors.toStdString();
}

} // namespace
