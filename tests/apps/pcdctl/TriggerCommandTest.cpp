// SPDX-License-Identifier: MIT
// pcdctl trigger.
#include <apps/pcdctl/CameraCommandTest.h>

#include <support/QtPrinters.h>

#include <QDir>
#include <QJsonArray>

#include <csignal>

#include <unistd.h>

namespace {

class TriggerCommand : public CameraCommandTest {
protected:
    TriggerCommand() {
        scene.set(u"flags"_qs,
                  QJsonArray{u"USB30"_qs, u"TRIGGER_SOFTWARE"_qs, u"TRIGGER_EXTERNAL"_qs});
    }
    CtlResult trigger(const QStringList& more) const {
        return run(QStringList{u"trigger"_qs, u"--exposure=2ms"_qs, u"--json"_qs} + more);
    }
    QStringList saved() const {
        return QDir(path(QString())).entryList({u"t-*.png"_qs}, QDir::Files, QDir::Name);
    }
    QString pattern() const { return u"--save="_qs + path(u"t-####.png"_qs); }
};

int deliveredIn(const CtlResult& result) {
    return result.json.value(u"ledger"_qs).toObject().value(u"delivered"_qs).toInt();
}

TEST_F(TriggerCommand, takes_one_frame_by_default) {
    const CtlResult result = trigger({});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(deliveredIn(result), 1);
    EXPECT_TRUE(calls().contains(u"Toupcam_Trigger(h1, 1)"_qs))
        << calls().join(u'\n').toStdString();
}

TEST_F(TriggerCommand, a_sequence_of_25_gives_25_files) {
    const CtlResult result = trigger({u"--count=25"_qs, pattern()});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(deliveredIn(result), 25);
    EXPECT_EQ(saved().size(), 25);
    EXPECT_EQ(saved().last(), u"t-0025.png"_qs);
}

TEST_F(TriggerCommand, uses_the_exposure_property) {
    ASSERT_EQ(trigger({u"--exposure=1s500ms20us"_qs, u"--count=1"_qs}).exitCode, 0);
    const QStringList made = calls();
    const qsizetype time = made.indexOf(u"Toupcam_put_ExpoTime(h1, 1500020)"_qs);
    const qsizetype mode = made.indexOf(u"Toupcam_put_Option(h1, 11, 1)"_qs);
    const qsizetype start = made.indexOf(u"Toupcam_Trigger(h1, 1)"_qs);
    EXPECT_GE(time, 0) << made.join(u'\n').toStdString();
    EXPECT_GT(mode, time);
    EXPECT_GT(start, mode);
    EXPECT_TRUE(made.contains(u"Toupcam_Trigger(h1, 0)"_qs)); // the run is ended
}

TEST_F(TriggerCommand, names_the_frame_that_does_not_come_and_where_the_gap_is) {
    scene.addFault({{u"do"_qs, u"dropTrigger"_qs}, {u"camera"_qs, u"cam-1"_qs}, {u"nth"_qs, 12}});
    // Slow enough for the gap to stand out.
    scene.setResolution(64, 48, 10);
    const CtlResult result = trigger({u"--count=25"_qs, u"--timeout=2"_qs, pattern()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(
        u"frame 25 of 25 did not arrive within 2.002 s of the one before"_qs))
        << result.errors.toStdString();
    EXPECT_TRUE(result.errors.contains(u"24 arrived"_qs)) << result.errors.toStdString();
    EXPECT_TRUE(result.errors.contains(u"is after frame 11"_qs)) << result.errors.toStdString();
    EXPECT_EQ(saved().size(), 24);
}

TEST_F(TriggerCommand, waits_for_the_cameras_input_and_fires_nothing_itself) {
    scene.set(u"externalTrigger"_qs, QJsonObject{{u"periodMs"_qs, 30}});
    const CtlResult result = trigger({u"--external"_qs, u"--count=3"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(deliveredIn(result), 3);
    EXPECT_TRUE(calls().contains(u"Toupcam_put_Option(h1, 11, 2)"_qs));
    EXPECT_FALSE(calls().contains(u"Toupcam_Trigger(h1, 3)"_qs));
}

TEST_F(TriggerCommand, an_input_without_signals_is_given_up) {
    const CtlResult result = trigger({u"--external"_qs, u"--count=3"_qs, u"--timeout=0.5"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(
        result.errors.contains(u"frame 1 of 3 did not arrive within 0.502 s of the start"_qs))
        << result.errors.toStdString();
}

TEST_F(TriggerCommand, repeats_until_ctrl_c_and_is_done) {
    const QString file = scene.writeTo(path(u"scene.json"_qs));
    const QString journal = path(u"own-journal"_qs);
    CtlProcess process({u"trigger"_qs, u"--sdk=sim"_qs, u"--scene"_qs, file, u"--repeat"_qs,
                        u"--exposure=2ms"_qs, u"--json"_qs});
    process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal).start();
    while (process.isRunning() && !readFile(journal).contains("Toupcam_Trigger(h1, 65535)"))
        usleep(10'000);
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 0) << process.errors().toStdString();
}

TEST_F(TriggerCommand, a_camera_that_does_not_report_its_trigger_is_not_said_to_have_none) {
    scene.addFaults(silence());
    const CtlResult result = trigger({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"the camera did not report \"extexposure\""_qs))
        << result.errors.toStdString();
}

TEST_F(TriggerCommand, what_was_not_read_at_first_is_read_again) {
    QJsonObject once = failing(u"Toupcam_get_AutoExpoTarget"_qs);
    once.insert(u"count"_qs, 2); // for both properties that have it
    scene.addFault(once);
    const CtlResult result = trigger({});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(deliveredIn(result), 1);
}

TEST_F(TriggerCommand, a_camera_without_a_software_trigger_refuses) {
    scene.set(u"flags"_qs, QJsonArray{u"USB30"_qs});
    const CtlResult result = trigger({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"the camera refused triggered capture"_qs))
        << result.errors.toStdString();
}

TEST_F(TriggerCommand, wrong_words_are_named) {
    EXPECT_EQ(trigger({u"--exposure=soon"_qs}).exitCode, 2);
    EXPECT_EQ(trigger({u"--count=0"_qs}).exitCode, 2);
    EXPECT_EQ(trigger({u"--count=1000"_qs}).exitCode, 2);
    EXPECT_EQ(trigger({u"--count=2"_qs, u"--repeat"_qs}).exitCode, 2);
    EXPECT_EQ(trigger({u"--software"_qs, u"--external"_qs}).exitCode, 2);
    EXPECT_TRUE(trigger({u"--exposure=soon"_qs}).errors.contains(u"\"soon\" is not a value"_qs));
}

// ---- Composite values, field by field.

class CompositeSetting : public CameraCommandTest {};

TEST_F(CompositeSetting, one_field_is_set_and_the_record_is_shown) {
    const CtlResult result =
        run({u"set"_qs, u"extexposure.autoexpenabled=off"_qs, u"extexposure.exp=12.5"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("exp=12.5 ")) << result.output.toStdString();
    EXPECT_TRUE(calls().contains(u"Toupcam_put_ExpoTime(h1, 12500)"_qs));
}

TEST_F(CompositeSetting, its_fields_are_in_the_json) {
    const CtlResult result = run({u"get"_qs, u"extexposure"_qs, u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(QJsonDocument(result.json).toJson().contains("\"spincount\": 1"));
}

TEST_F(CompositeSetting, an_unknown_field_is_wrong_usage_and_nothing_is_sent) {
    const CtlResult result = run({u"set"_qs, u"contrast=5"_qs, u"extexposure.speed=1"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"no field \"speed\""_qs)) << result.errors.toStdString();
    EXPECT_FALSE(calls().contains(u"Toupcam_put_Contrast(h1, 5)"_qs));
}

TEST_F(CompositeSetting, the_whole_record_cannot_be_set_and_the_way_is_shown) {
    const CtlResult result = run({u"set"_qs, u"extexposure=5"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"extexposure.FIELD=VALUE"_qs))
        << result.errors.toStdString();
}

TEST_F(CompositeSetting, a_profile_brings_the_record_back) {
    const QString file = path(u"p.json"_qs);
    ASSERT_EQ(run({u"profile"_qs, u"save"_qs, file, u"--set"_qs,
                   u"extexposure.autoexpenabled=off"_qs, u"--set"_qs, u"extexposure.exp=7.5"_qs})
                  .exitCode,
              0);
    const CtlResult result = run({u"get"_qs, u"extexposure"_qs, u"--profile"_qs, file});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("exp=7.5 ")) << result.output.toStdString();
}

} // namespace
