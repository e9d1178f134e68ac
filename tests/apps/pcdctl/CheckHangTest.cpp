// SPDX-License-Identifier: MIT
// `pcdctl check` of a driver that does not return, or that throws.
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QJsonArray>
#include <QXmlStreamReader>

#include <csignal>

namespace {

QStringList findFailedRules(const QJsonObject& report) {
    QStringList ids;
    for (const QJsonValue& rule : report[u"rules"].toArray()) {
        if (rule[u"state"] == u"failed"_qs)
            ids.append(rule[u"id"].toString());
    }
    return ids;
}

QJsonValue findRule(const QJsonObject& report, const QString& id) {
    for (const QJsonValue& rule : report[u"rules"].toArray()) {
        if (rule[u"id"] == id)
            return rule;
    }
    return {};
}

QString describeFirstFailure(const QJsonObject& report, const QString& id) {
    return findRule(report, id)[u"failures"][0][u"seen"].toString();
}

class CheckHang : public FolderTest {
protected:
    /// Of a simulated camera whose stills are requested by a call that does not return.
    QStringList ofHangingStill() {
        scene.addFault(hanging(u"Toupcam_Snap"_qs));
        return {u"check"_qs,         u"--sdk=sim"_qs,
                u"--scene"_qs,       scene.writeTo(path(u"scene.json"_qs)),
                u"--hang=10"_qs,     u"--filter=open.link,still.arrives,trigger.frames"_qs,
                u"--iterations=3"_qs};
    }

    CtlScene scene =
        CtlScene().addCamera().set(u"flags"_qs, QJsonArray{u"USB30"_qs, u"TRIGGER_SOFTWARE"_qs});
};

TEST_F(CheckHang, in_a_call_ends_with_a_whole_report_that_names_the_call) {
    const QString file = path(u"check.xml"_qs);
    const CtlResult result = runCtl(ofHangingStill() + QStringList{jsonWord, u"--junit"_qs, file});
    EXPECT_EQ(result.exitCode, 1);
    const QString rule = u"still.arrives"_qs;
    EXPECT_EQ(findFailedRules(result.json), QStringList{rule}) << result.output.toStdString();
    const QString seen = describeFirstFailure(result.json, rule);
    EXPECT_TRUE(seen.startsWith(u"the driver has not returned for "_qs)) << seen.toStdString();
    EXPECT_TRUE(seen.contains(u" s, waiting for Toupcam_Snap(0x"_qs)) << seen.toStdString();
    EXPECT_TRUE(seen.endsWith(u" s so far)"_qs)) << seen.toStdString();
    EXPECT_EQ(findRule(result.json, u"open.link"_qs)[u"state"], u"passed"_qs);
    EXPECT_EQ(findRule(result.json, u"trigger.frames"_qs)[u"skipped"],
              u"not examined: the driver did not return in still.arrives"_qs);
    EXPECT_TRUE(result.errors.contains(u"pcdctl: the check ends in still.arrives ("_qs))
        << result.errors.toStdString();

    QXmlStreamReader xml(readFile(file));
    int failures = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"failure")
            ++failures;
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(failures, 1);
}

TEST_F(CheckHang, is_printed_like_other_failures) {
    const CtlResult result = runCtl(ofHangingStill());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.output.contains("         Seen: the driver has not returned for "))
        << result.output.constData();
    EXPECT_TRUE(result.output.contains("\nfailed   still.arrives: 1 of 1 case\n"))
        << result.output.constData();
    EXPECT_TRUE(
        result.output.endsWith("\n3 rules: 1 passed, 1 failed, 1 skipped; 2 cases: 1 failed\n"))
        << result.output.constData();
}

TEST_F(CheckHang, ends_the_check_after_the_user_has_interrupted_it_too) {
    CtlProcess process(ofHangingStill() + QStringList{jsonWord});
    ASSERT_TRUE(process.start().waitForErrors("waiting for Toupcam_Snap(0x"));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(findFailedRules(process.json()), QStringList{u"still.arrives"_qs});
}

TEST_F(CheckHang, is_not_what_takes_long_because_frames_do_not_come) {
    scene.addFault(stepAt(0, u"hold"_qs));
    const CtlResult result =
        runCtl({u"check"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                scene.setResolution(160, 120, 30).writeTo(path(u"scene.json"_qs)), jsonWord,
                u"--filter=stream.delivers"_qs, u"--hang=5"_qs, u"--timeout=7"_qs});
    EXPECT_EQ(result.exitCode, 1);
    const QString seen = describeFirstFailure(result.json, u"stream.delivers"_qs);
    EXPECT_TRUE(seen.startsWith(u"0 frames arrived in "_qs)) << seen.toStdString();
    EXPECT_EQ(result.errors, u"pcdctl: the camera breaks 1 of 1 rules\n"_qs);
}

TEST(CheckHangOfHost, is_not_what_waits_for_frames_without_events) {
    const CtlResult result =
        runCtl({u"check"_qs, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK),
                u"--plugin-path"_qs, QStringLiteral(MUTANT_PLUGIN), u"--hang=5"_qs,
                u"--timeout=7"_qs, u"--filter=threads.frames-do-not-wait"_qs},
               [](CtlProcess& process) {
                   process.with(u"PCD_MUTANT"_qs, u"threads.frames-do-not-wait"_qs);
               });
    EXPECT_EQ(result.exitCode, 1);
    const QString seen = describeFirstFailure(result.json, u"threads.frames-do-not-wait"_qs);
    EXPECT_TRUE(seen.endsWith(u" frames arrived while the host was busy"_qs)) << seen.toStdString();
    EXPECT_EQ(result.errors, u"pcdctl: the camera breaks 1 of 1 rules\n"_qs);
}

/// A check of a driver without an SDK.
CtlResult checkMutant(const QByteArray& fault, const QString& filter) {
    return runCtl({u"check"_qs, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK),
                   u"--plugin-path"_qs, QStringLiteral(MUTANT_PLUGIN), u"--hang=10"_qs,
                   u"--filter"_qs, filter},
                  [&](CtlProcess& process) {
                      process.with(u"PCD_MUTANT_FAULT"_qs, QString::fromLatin1(fault));
                  });
}

struct HangRow {
    const char* name;
    const char* function; ///< that does not return
    const char* filter;
    const char* rule; ///< that fails
    const char* place;
};

class CheckHangIn : public RowTest<HangRow> {};

ROW_TEST(CheckHangIn, is_a_failure_of_what_is_examined) {
    const HangRow& row = GetParam();
    const CtlResult result =
        checkMutant(QByteArray("hang ") + row.function, QString::fromLatin1(row.filter));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(findFailedRules(result.json), QStringList{QString::fromLatin1(row.rule)})
        << result.output.toStdString() << result.errors.toStdString();
    const QJsonValue failure = findRule(result.json, QString::fromLatin1(row.rule))[u"failures"][0];
    EXPECT_EQ(failure[u"case"].toString(), QString::fromLatin1(row.place));
    EXPECT_TRUE(
        failure[u"seen"].toString().endsWith(u" s; it has marked no call as in progress"_qs))
        << failure[u"seen"].toString().toStdString();
}

const HangRow hangs[] = {
    {"opening", "tryLink", "groups.*,open.link", "open.link", "while it was opened"},
    {"opening_without_the_rule", "tryLink", "groups.*", "groups.members", "while it was opened"},
    {"a_case", "tryStopStream", "stream.stops", "stream.stops", "mode 0 (640x480), streaming"},
    {"putting_back", "tryStopStream", "stream.frame-size", "stream.frame-size",
     "while settings were put back"},
    {"closing", "tryUnlink", "identity.model", "identity.model", "while it was closed"},
};

ROWS_IN(Functions, CheckHangIn, hangs);

TEST(CheckHangOutside, of_the_examination_ends_the_program_too) {
    const CtlResult search = checkMutant("hang aliveDevices", u"identity.model"_qs);
    EXPECT_EQ(search.exitCode, 1);
    EXPECT_TRUE(search.errors.endsWith(
        u"pcdctl: the driver does not return while cameras are searched for\n"_qs))
        << search.errors.toStdString();
    const CtlResult end = checkMutant("hang ~MutantRegister", u"identity.model"_qs);
    EXPECT_EQ(end.exitCode, 1);
    EXPECT_EQ(end.json[u"totals"][u"passed"].toInt(), 1) << end.output.toStdString();
    EXPECT_EQ(end.errors, u"pcdctl: the driver does not return at the end of the check\n"_qs);
}

} // namespace
