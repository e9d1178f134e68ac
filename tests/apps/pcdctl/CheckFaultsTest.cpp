// SPDX-License-Identifier: MIT
// `pcdctl check` of a camera that fails or is unplugged meanwhile, and of a driver that throws.
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QJsonArray>

namespace {

class CheckFaults : public FolderTest {
protected:
    CtlResult check(const QString& filter) const {
        return runCtl({u"check"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                       scene.writeTo(path(u"scene.json"_qs)), u"--filter"_qs, filter, u"--trace"_qs,
                       path(u"a.trace"_qs), jsonWord});
    }

    CtlScene scene =
        CtlScene().addCamera().set(u"flags"_qs, QJsonArray{u"USB30"_qs, u"TRIGGER_SOFTWARE"_qs});
};

TEST_F(CheckFaults, a_setting_that_could_not_be_read_before_is_not_changed) {
    // It is read when the camera is opened, and again before the check.
    QJsonObject fault = failing(u"Toupcam_get_Saturation"_qs);
    fault.insert(u"skip"_qs, 1);
    fault.insert(u"count"_qs, 1);
    scene.addFault(fault);
    const CtlResult result = check(u"properties.set-read-back"_qs);
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString() << result.errors.toStdString();
    const QByteArray trace = readFile(path(u"a.trace"_qs));
    EXPECT_TRUE(trace.contains("\"Toupcam_put_Contrast\"")) << trace.toStdString();
    EXPECT_FALSE(trace.contains("\"Toupcam_put_Saturation\"")) << trace.toStdString();
}

TEST_F(CheckFaults, a_camera_that_does_not_report_its_mode_is_not_examined) {
    scene.addFault(failing(u"Toupcam_get_eSize"_qs));
    const CtlResult result = check(u"modes.*"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.endsWith(
        u"pcdctl: the camera did not report its mode, which could not be set back\n"_qs))
        << result.errors.toStdString();
    EXPECT_FALSE(readFile(path(u"a.trace"_qs)).contains("\"Toupcam_put_eSize\""));
}

struct UnpluggedRow {
    const char* name;
    const char* filter;
    int frames; ///< that have come before
};

class UnpluggedCheck : public CheckFaults, public WithRow<UnpluggedRow> {};

ROW_TEST(UnpluggedCheck, ends_with_a_report) {
    scene.addFault(unplugAfter(GetParam().frames));
    const CtlResult result = check(QString::fromLatin1(GetParam().filter));
    EXPECT_EQ(result.exitCode, 1) << result.errors.toStdString();
    EXPECT_EQ(result.json[u"totals"][u"rules"].toInt(), 1) << result.output.toStdString();
    // Failed, or left out if it goes before the case begins.
    EXPECT_EQ(result.json[u"totals"][u"passed"].toInt(-1), 0) << result.output.toStdString();
}

const UnpluggedRow unplugged[] = {
    {"while_frames_are_awaited", "stream.delivers", 2},
    {"while_frames_are_triggered", "trigger.frames", 1},
    {"between_starts_and_stops", "resources.threads", 5},
};

ROWS_IN(Rules, UnpluggedCheck, unplugged);

struct ThrowRow {
    const char* name;
    const char* fault;
    const char* filter;
    const char* place;
    const char* seen;
};

class ThrowingDriver : public RowTest<ThrowRow> {};

ROW_TEST(ThrowingDriver, fails_the_rule_and_does_not_lose_the_report) {
    const CtlResult result = runCtl(
        {u"check"_qs, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK), u"--plugin-path"_qs,
         QStringLiteral(MUTANT_PLUGIN), u"--filter"_qs, QString::fromLatin1(GetParam().filter)},
        [](CtlProcess& process) {
            process.with(u"PCD_MUTANT_FAULT"_qs, QString::fromLatin1(GetParam().fault));
        });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, u"pcdctl: the camera breaks 1 of 1 rules\n"_qs);
    const QJsonValue failure = result.json[u"rules"][0][u"failures"][0];
    EXPECT_EQ(failure[u"case"].toString(), QString::fromLatin1(GetParam().place))
        << result.output.toStdString();
    EXPECT_EQ(failure[u"seen"].toString(), QString::fromLatin1(GetParam().seen));
}

const ThrowRow throwing[] = {
    {"while_it_is_opened", "throw tryLink", "open.link", "while it was opened",
     "ended by an exception: the driver is broken"},
    {"in_a_case", "throw tryStopStream", "stream.stops", "mode 0 (640x480), streaming",
     "ended by an exception: the driver is broken"},
    {"at_the_end_of_a_case", "throw tryStopStream", "stream.delivers", "mode 0 (640x480), idle",
     "ended by an exception: the driver is broken"},
    {"what_is_no_standard_exception", "throw-number tryStopStream", "stream.delivers",
     "mode 0 (640x480), idle", "ended by an unknown exception"},
    {"while_settings_are_put_back", "throw tryStopStream", "stream.frame-size",
     "while settings were put back", "ended by an exception: the driver is broken"},
};

ROWS_IN(Functions, ThrowingDriver, throwing);

/// The check of a driver without an SDK, with one variable in its environment.
CtlResult checkDriver(const QString& variable, const QString& value, const QStringList& options) {
    return runCtl(QStringList{u"check"_qs, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK),
                              u"--plugin-path"_qs, QStringLiteral(MUTANT_PLUGIN)} +
                      options,
                  [&](CtlProcess& process) { process.with(variable, value); });
}

TEST(ThrowingDriverAtTheEnd, is_printed_with_its_rule) {
    const CtlResult result =
        checkDriver(u"PCD_MUTANT_FAULT"_qs, u"throw tryUnlink"_qs, {u"--filter=identity.model"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.output.contains("\nfailed   identity.model: 1 of "))
        << result.output.constData();
}

TEST(ThrowingDriverAtFirst, leaves_a_whole_report_and_what_was_not_examined) {
    const CtlResult result = checkDriver(u"PCD_MUTANT_FAULT"_qs, u"throw tryLink"_qs,
                                         {u"--filter=open.link,identity.model"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.output.contains("\nfailed   open.link: 1 of 1 case\n"))
        << result.output.constData();
    EXPECT_TRUE(
        result.output.endsWith("\n2 rules: 0 passed, 1 failed, 1 skipped; 1 case: 1 failed\n"))
        << result.output.constData();
}

/// Why each rule was skipped, in their order.
QStringList collectSkipped(const QJsonObject& report) {
    QStringList texts;
    for (const QJsonValue& rule : report[u"rules"].toArray())
        texts.append(rule[u"skipped"].toString());
    return texts;
}

TEST(UnnoticedCable, leaves_the_rules_about_what_follows_unexamined) {
    const CtlResult result =
        checkDriver(u"PCD_MUTANT"_qs, u"hot-plug.noticed"_qs,
                    {jsonWord, u"--allow=unplug"_qs, u"--timeout=1"_qs, u"--filter"_qs,
                     u"hot-plug.returns,hot-plug.calls-return,hot-plug.stream-ends,"
                     "hot-plug.opens-again,hot-plug.streams-again,hot-plug.nothing-left"_qs});
    EXPECT_EQ(collectSkipped(result.json), QStringList(6, u"the camera is still in the list"_qs))
        << result.output.constData();
    EXPECT_EQ(result.errors, u"pcdctl: nothing could be examined\n"_qs);
}

class CheckSerial : public CheckFaults {
protected:
    CtlResult unplug() const {
        return runCtl({u"check"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                       scene.writeTo(path(u"scene.json"_qs)), u"--allow=unplug"_qs,
                       u"--filter=hot-plug.noticed,hot-plug.returns"_qs, jsonWord});
    }
};

TEST_F(CheckSerial, may_be_longer_than_what_the_driver_keeps_of_it) {
    scene = CtlScene().addCamera(u"cam-1"_qs, u"S1234567890123456789012345678"_qs);
    const CtlResult result = unplug();
    EXPECT_EQ(result.exitCode, 0) << result.output.constData();
    EXPECT_EQ(result.json[u"totals"][u"passed"].toInt(), 2);
}

TEST_F(CheckSerial, of_several_cameras_unplugs_none_of_them) {
    scene = CtlScene()
                .addCamera(u"cam-1"_qs, u"S123456789-1"_qs)
                .addCamera(u"cam-2"_qs, u"S123456789-2"_qs);
    const CtlResult result = unplug();
    EXPECT_EQ(collectSkipped(result.json),
              QStringList(2, u"several cameras have the serial number \"S123456789\""_qs));
    scene = CtlScene().addCamera(u"cam-1"_qs, QString());
    EXPECT_EQ(collectSkipped(unplug().json), QStringList(2, u"the camera has no serial number"_qs));
}

TEST(ThrowingDriverCommand, fails_with_a_message_whatever_is_thrown) {
    for (const auto& [fault, message] :
         {std::pair("throw tryLink", "pcdctl: the driver is broken\n"),
          {"throw-number tryLink", "pcdctl: unknown exception\n"}}) {
        const CtlResult result =
            runCtl({u"get"_qs, u"gain"_qs, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK),
                    u"--plugin-path"_qs, QStringLiteral(MUTANT_PLUGIN)},
                   [name = fault](CtlProcess& process) {
                       process.with(u"PCD_MUTANT_FAULT"_qs, QString::fromLatin1(name));
                   });
        EXPECT_EQ(result.exitCode, 1) << fault;
        EXPECT_EQ(result.errors, QString::fromLatin1(message));
    }
}

} // namespace
