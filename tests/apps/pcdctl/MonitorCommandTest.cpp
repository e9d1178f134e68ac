// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDateTime>

#include <csignal>

namespace {

class MonitorCommand : public FolderTest {
protected:
    CtlScene scene = CtlScene().addCamera();

    QStringList arguments(const QStringList& more) const {
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        return QStringList{u"monitor"_qs, u"--sdk=sim"_qs, u"--scene"_qs, file} + more;
    }
};

TEST_F(MonitorCommand, shows_which_cameras_are_present_leave_and_arrive_until_ctrl_c) {
    // Late, as the first search for cameras comes before it on a busy machine too, and far apart: a
    // host searches for cameras a second after the last change.
    scene.addFault(stepAt(1500, u"unplug"_qs)).addFault(stepAt(5500, u"plug"_qs));
    CtlProcess process(arguments({u"--json"_qs}));
    process.start();
    ASSERT_TRUE(process.waitForOutput("\"arrived\""));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 0);
    QStringList events;
    for (const QByteArray& line : process.output().trimmed().split('\n')) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        events.append(event.value(u"event"_qs).toString());
        EXPECT_EQ(event.value(u"id"_qs).toString(), smallCameraId) << line.toStdString();
        EXPECT_TRUE(event.value(u"simulated"_qs).toBool());
        const QString time = event.value(u"time"_qs).toString();
        EXPECT_TRUE(time.endsWith(u'Z')) << line.toStdString();
        EXPECT_TRUE(QDateTime::fromString(time, Qt::ISODateWithMs).isValid());
    }
    EXPECT_EQ(events, QStringList({u"present"_qs, u"departed"_qs, u"arrived"_qs}));
}

TEST_F(MonitorCommand, ends_when_its_time_is_over) {
    const CtlResult result = runCtl(arguments({u"-t"_qs, u"0.2"_qs}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output.count('\n'), 1);
    EXPECT_TRUE(result.output.endsWith("Z  present   Small-S0001  (simulated)\n"))
        << result.output.toStdString();
}

TEST_F(MonitorCommand, ctrl_c_before_a_set_end_ends_with_code_1) {
    CtlProcess process(arguments({u"-t"_qs, u"1000"_qs}));
    process.start();
    ASSERT_TRUE(process.waitForOutput("present"));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
}

TEST_F(MonitorCommand, without_a_camera_waits_for_one) {
    scene.set(u"plugged"_qs, false);
    const CtlResult result = runCtl(arguments({u"-t"_qs, u"0.2"_qs}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.contains(u"no camera yet"_qs)) << result.errors.toStdString();
}

} // namespace
