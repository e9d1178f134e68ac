// SPDX-License-Identifier: MIT
// `pcdctl check` of a camera that fails or is unplugged meanwhile.
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowName.h>

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

void PrintTo(const UnpluggedRow& row, std::ostream* out) {
    *out << row.name;
}

class UnpluggedCheck : public CheckFaults, public testing::WithParamInterface<UnpluggedRow> {};

TEST_P(UnpluggedCheck, ends_with_a_report) {
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

INSTANTIATE_TEST_SUITE_P(Rules, UnpluggedCheck, testing::ValuesIn(unplugged), RowName());

} // namespace
