// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CameraCommandTest.h>

#include <support/QtPrinters.h>

#include <QJsonArray>

namespace {

class ResetCommand : public CameraCommandTest {};

TEST_F(ResetCommand, sends_the_default_of_what_is_named) {
    const CtlResult result = run({u"reset"_qs, u"saturation"_qs, u"--set"_qs, u"saturation=3"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(calls(), (QStringList{u"Toupcam_put_Saturation(h1, 3)"_qs,
                                    u"Toupcam_put_Saturation(h1, 128)"_qs}));
    EXPECT_EQ(result.output, QByteArray("saturation=128\n"));
}

TEST_F(ResetCommand, sends_every_default_that_can_be_sent_and_names_the_others) {
    const CtlResult result = run({u"reset"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        calls(),
        (QStringList{u"Toupcam_put_Contrast(h1, 0)"_qs, u"Toupcam_put_Hue(h1, 0)"_qs,
                     u"Toupcam_put_Saturation(h1, 128)"_qs, u"Toupcam_put_Brightness(h1, 0)"_qs,
                     u"Toupcam_put_Gamma(h1, 100)"_qs, u"Toupcam_put_Speed(h1, 3)"_qs}));
    EXPECT_EQ(
        result.errors,
        u"pcdctl: not reset: tint: its default 6503 was not sent: expected a whole number from "
        "200 to 2500\n"
        "pcdctl: not reset: temp: its default 1000 was not sent: expected a whole number from "
        "2000 to 15000\n"_qs);
}

TEST_F(ResetCommand, fails_for_one_that_is_named_and_cannot_be_reset) {
    const CtlResult result = run({u"reset"_qs, u"tint"_qs, u"negative"_qs, u"gamma"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"tint: its default 6503 was not sent"_qs));
    EXPECT_TRUE(result.errors.contains(u"negative: it has no default"_qs));
    EXPECT_EQ(calls(), QStringList{u"Toupcam_put_Gamma(h1, 100)"_qs});
}

TEST_F(ResetCommand, resets_what_profiles_do_not_hold_if_it_is_named) {
    const CtlResult result = run({u"reset"_qs, u"autoexpottime"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(calls(), QStringList{u"Toupcam_put_ExpoTime(h1, 120)"_qs});
}

TEST_F(ResetCommand, fails_if_the_camera_does_not_take_a_default) {
    scene.addFault(QJsonObject{{u"do"_qs, u"fail"_qs},
                               {u"function"_qs, u"Toupcam_put_Gamma"_qs},
                               {u"skip"_qs, 1},
                               {u"result"_qs, -2147467259}});
    const CtlResult result = run({u"reset"_qs, u"--set"_qs, u"gamma=50"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"gamma: requested 100, the camera has 50"_qs))
        << result.errors.toStdString();
    EXPECT_EQ(idsIn(result.json.value(u"refused"_qs)), QStringList{u"gamma"_qs});
    EXPECT_EQ(idsIn(result.json.value(u"kept"_qs)), (QStringList{u"tint"_qs, u"temp"_qs}));
    EXPECT_EQ(result.json.value(u"properties"_qs)[u"gamma"_qs], 50);
}

TEST_F(ResetCommand, sends_the_default_of_a_switch_that_is_not_reported) {
    scene.addFault(failing(u"Toupcam_get_AutoExpoEnable"_qs));
    const CtlResult result = run({u"reset"_qs, u"autoexponeable"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(calls(), QStringList{u"Toupcam_put_AutoExpoEnable(h1, 1)"_qs});
    EXPECT_TRUE(result.errors.endsWith(
        u"pcdctl: autoexponeable: requested on, the camera did not report what it has\n"_qs))
        << result.errors.toStdString();
}

TEST_F(ResetCommand, of_an_unknown_id_is_wrong_usage_and_resets_nothing) {
    const CtlResult result = run({u"reset"_qs, u"gamma"_qs, u"gain"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"the camera has no property \"gain\""_qs));
    EXPECT_EQ(calls(), QStringList());
}

} // namespace
