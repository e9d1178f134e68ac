// SPDX-License-Identifier: MIT
// pcdctl profile, and --profile.
#include <apps/pcdctl/CameraCommandTest.h>
#include <apps/pcdctl/CtlFiles.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QImage>
#include <QJsonArray>

namespace {

class ProfileCommand : public CameraCommandTest {
protected:
    const QString file = path(u"a.json"_qs);

    CtlResult profile(const QString& action, const QStringList& more = {}) const {
        return run(QStringList{u"profile"_qs, action, file} + more);
    }
    /// Every setting that profiles hold, each different from its power-on value.
    static QStringList everySetting() {
        QStringList arguments{u"--mode=1"_qs};
        for (const char* setting :
             {"tint=1200", "temp=5000", "contrast=12", "hue=-30", "saturation=200", "brightness=20",
              "gamma=150", "negative=on", "chrome=on", "vflip=on", "hflip=on", "speed=1",
              "colormatrix=Disable", "wbgain=Disable", "binning=Average 2x2", "rotate=90",
              "roi=8,16,100,40"})
            arguments += QStringList{u"--set"_qs, QString::fromLatin1(setting)};
        return arguments;
    }
    /// Replaces a text in the profile.
    void edit(const char* before, const char* after) const {
        const QByteArray text = readFile(file);
        ASSERT_TRUE(text.contains(before)) << before;
        writeFile(file, QByteArray(text).replace(before, after));
    }
};

TEST_F(ProfileCommand, saved_and_loaded_into_a_camera_at_power_on_gives_the_same_settings) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    const CtlResult result =
        run({u"profile"_qs, u"save"_qs, path(u"b.json"_qs), u"--profile"_qs, file});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(readFile(path(u"b.json"_qs)), readFile(file));
    EXPECT_TRUE(readFile(file).contains("\"value\": \"Average 2x2\""));
}

TEST_F(ProfileCommand, of_power_on_brings_back_every_setting_that_was_changed) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    ASSERT_EQ(
        run(QStringList{u"profile"_qs, u"save"_qs, path(u"b.json"_qs)} + everySetting()).exitCode,
        0);
    // In one session: the first profile changes everything, the second restores it.
    const CtlResult loaded =
        profile(u"load"_qs, {u"--profile"_qs, path(u"b.json"_qs), u"--json"_qs});
    ASSERT_EQ(loaded.exitCode, 0) << loaded.errors.toStdString();
    EXPECT_EQ(loaded.json.value(u"applied"_qs).toArray().size(), 20);
    const QStringList last = calls().mid(calls().size() - 24); // the exposure takes five calls
    EXPECT_EQ(last.first(), u"Toupcam_put_eSize(h1, 0)"_qs);
    EXPECT_TRUE(last.contains(u"Toupcam_put_TempTint(h1, 6503, 1000)"_qs));
    EXPECT_TRUE(last.contains(u"Toupcam_put_Option(h1, 23, 1)"_qs));
    EXPECT_EQ(last.last(), u"Toupcam_put_Roi(h1, 0, 0, 320, 240)"_qs);
}

TEST_F(ProfileCommand, reports_a_load_as_json) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    edit("\"hue\": {\n                \"value\": 0\n            },", "");
    edit("\"properties\": {", "\"properties\": {\"awbonce\": {\"value\": 1},");
    edit("\"contrast\"", "\"sharpness\"");
    const CtlResult result = profile(u"load"_qs, {u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.json.value(u"camera"_qs), smallCameraId);
    EXPECT_EQ(result.json.value(u"file"_qs), file);
    EXPECT_EQ(idsIn(result.json.value(u"refused"_qs)), QStringList{u"sharpness"_qs});
    EXPECT_EQ(idsIn(result.json.value(u"ignored"_qs)), QStringList{u"awbonce"_qs});
    EXPECT_EQ(idsIn(result.json.value(u"missing"_qs)), (QStringList{u"contrast"_qs, u"hue"_qs}));
    EXPECT_TRUE(idsIn(result.json.value(u"applied"_qs)).contains(u"gamma"_qs));
    EXPECT_EQ(result.errors, u"pcdctl: sharpness: the camera has no such property\n"_qs);
    EXPECT_FALSE(calls().contains(u"Toupcam_AwbOnePush(h1, fn, ctx)"_qs));
}

TEST_F(ProfileCommand, reports_a_load_in_words) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    edit("\"serial\": \"S0001\"", "\"serial\": \"S0002\"");
    edit("\"properties\": {", "\"properties\": {\"awbonce\": {\"value\": 1},");
    edit("\"hue\": {\n                \"value\": 0\n            },", "");
    const CtlResult result = profile(u"load"_qs);
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(QString::fromUtf8(result.output),
              u"Loaded %1: 18 values set\n"
              "note: saved from another camera: Small, serial number S0002; this one is Small, "
              "serial number S0001\n"
              "not set: awbonce: it is an action, which a profile never runs\n"
              "not in the file: hue\n"_qs.arg(file));
}

TEST_F(ProfileCommand, says_what_the_camera_refuses_and_sets_the_rest) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    scene.addFault(failing(u"Toupcam_put_Contrast"_qs));
    const CtlResult result = profile(u"load"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, u"pcdctl: contrast: requested 12, the camera has 0\n"_qs);
    EXPECT_TRUE(calls().contains(u"Toupcam_put_Gamma(h1, 150)"_qs));
    EXPECT_EQ(calls().last(), u"Toupcam_put_Roi(h1, 8, 16, 100, 40)"_qs);
}

struct EditRow {
    const char* name;
    const char* before;
    const char* after;
    const char* message;
};

class EditedProfile : public ProfileCommand, public WithRow<EditRow> {};

ROW_TEST(EditedProfile, is_refused_with_file_and_line_and_nothing_is_set) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    edit(GetParam().before, GetParam().after);
    const CtlResult result = profile(u"load"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.startsWith(
        u"pcdctl: \"%1\": %2"_qs.arg(file, QString::fromUtf8(GetParam().message))))
        << result.errors.toStdString();
    EXPECT_EQ(calls(), QStringList());
}

const EditRow edits[] = {
    {"a_number_out_of_range", "\"value\": 12\n", "\"value\": 101\n",
     "line 29: \"contrast\" cannot be 101: expected a whole number from -100 to 100"},
    {"a_number_that_is_a_text", "\"value\": 12\n", "\"value\": \"12\"\n",
     "line 29: \"contrast\" cannot be the text \"12\": expected a whole number"},
    {"a_field_that_is_a_text", "\"seconds\": 5", "\"seconds\": \"five\"",
     "line 16: \"extexposure.seconds\" cannot be the text \"five\": expected a whole number from 0 "
     "to 60"},
    {"a_choice_that_is_unknown", "Average 2x2", "Average 5x5",
     "line 71: \"binning\" cannot be the text \"Average 5x5\": expected one of \"No binning\""},
    {"a_region_outside_its_mode", "[8, 16, 100, 40]", "[8, 16, 320, 240]",
     "line 59: \"roi\" cannot be 8,16,320,240: expected a region x,y,width,height inside "
     "0,0,160,120"},
    {"a_mode_that_is_unknown", "\"mode\": \"1\"", "\"mode\": \"9\"",
     "line 7: \"mode\" cannot be the text \"9\": expected one of \"0\" (320x240), \"1\" "
     "(160x120)"},
    {"another_version", "\"version\": 1", "\"version\": 7",
     "line 3: another version of the format: expected \"version\": 1"},
    {"a_lost_bracket", "\"mode\": \"1\",", "\"mode\": \"1\"", "line 8: not JSON"},
};

ROWS_IN(Pcdctl, EditedProfile, edits);

TEST_F(ProfileCommand, that_is_not_there_is_a_failure) {
    for (const QString& action : {u"load"_qs, u"diff"_qs}) {
        const CtlResult result = profile(action);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(result.errors.contains(u"cannot read \"%1\": "_qs.arg(file)))
            << result.errors.toStdString();
    }
}

TEST_F(ProfileCommand, of_a_grey_camera_loads_though_colour_has_no_meaning_there) {
    scene.set(u"bits"_qs, 8).set(u"flags"_qs, QJsonArray{u"MONO"_qs});
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    const CtlResult result = profile(u"load"_qs);
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("not set: tint: the camera already has this value"));
}

TEST_F(ProfileCommand, of_another_model_sets_what_this_one_can_have) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    edit("\"model\": \"Small\"", "\"model\": \"Large\"");
    edit("\"value\": 12\n", "\"value\": 500\n");
    const CtlResult result = profile(u"load"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              u"pcdctl: contrast: cannot be 500: expected a whole number from -100 to 100\n"_qs);
    EXPECT_TRUE(result.output.contains("note: saved from another camera: Large, serial"));
    EXPECT_TRUE(calls().contains(u"Toupcam_put_Gamma(h1, 150)"_qs));
}

TEST_F(ProfileCommand, keeps_the_requested_mode_and_does_not_set_the_region_of_another) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    const CtlResult result = profile(u"load"_qs, {u"--mode=0"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("not set: roi: it is a region of another mode"));
    EXPECT_FALSE(calls().contains(u"Toupcam_put_eSize(h1, 1)"_qs));
    EXPECT_FALSE(calls().join(u' ').contains(u"put_Roi"_qs));
}

TEST_F(ProfileCommand, differs_from_the_camera_by_name) {
    ASSERT_EQ(profile(u"save"_qs, {u"--set"_qs, u"contrast=12"_qs}).exitCode, 0);
    const CtlResult result = profile(u"diff"_qs, {u"--set"_qs, u"rotate=90"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(QString::fromUtf8(result.output),
              u"contrast: file 12, camera 0\nrotate: file 0°, camera 90°\n"_qs);
    EXPECT_EQ(result.errors,
              u"pcdctl: the camera differs from \"%1\" in 2 settings\n"_qs.arg(file));
}

TEST_F(ProfileCommand, differs_in_a_composite_setting_by_field) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    EXPECT_TRUE(readFile(file).contains("\"seconds\": 5,")) << readFile(file).toStdString();
    EXPECT_FALSE(readFile(file).contains("capturemode"));
    const CtlResult result = profile(u"diff"_qs, {u"--set"_qs, u"extexposure.seconds=7"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(QString::fromUtf8(result.output), u"extexposure.seconds: file 5, camera 7\n"_qs);
}

TEST_F(ProfileCommand, differs_in_nothing_from_a_camera_that_loaded_it) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    const CtlResult result = profile(u"diff"_qs, {u"--profile"_qs, file, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json, QJsonObject({{u"camera"_qs, smallCameraId},
                                        {u"file"_qs, file},
                                        {u"same"_qs, true},
                                        {u"differences"_qs, QJsonArray()}}));
}

TEST_F(ProfileCommand, differs_also_where_only_one_side_has_a_setting) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    edit("\"contrast\"", "\"sharpness\"");
    const CtlResult result = profile(u"diff"_qs);
    EXPECT_EQ(QString::fromUtf8(result.output),
              u"sharpness: file 0, not a saved property of the camera\n"
              "contrast: not in the file, camera 0\n"_qs);
}

TEST_F(ProfileCommand, of_a_snap_is_applied_before_its_settings) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    const QString picture = path(u"a.png"_qs);
    const CtlResult result =
        run({u"snap"_qs, u"-o"_qs, picture, u"--profile"_qs, file, u"--set"_qs, u"contrast=5"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(QImage(picture).text(u"Contrast"_qs), u"5"_qs);
    EXPECT_EQ(QImage(picture).text(u"Gamma"_qs), u"150"_qs);
    // Half of 100 x 40 pixels, rotated by 90 degrees.
    EXPECT_EQ(QImage(picture).size(), QSize(20, 50));
    EXPECT_LT(calls().indexOf(u"Toupcam_put_Contrast(h1, 12)"_qs),
              calls().indexOf(u"Toupcam_put_Contrast(h1, 5)"_qs));
}

TEST_F(ProfileCommand, of_a_snap_that_is_not_applied_completely_stops_it) {
    ASSERT_EQ(profile(u"save"_qs, everySetting()).exitCode, 0);
    scene.addFault(failing(u"Toupcam_put_Contrast"_qs));
    const CtlResult result = run({u"snap"_qs, u"-o"_qs, path(u"a.png"_qs), u"--profile"_qs, file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              u"pcdctl: \"%1\" was not applied completely\ncontrast: requested 12, the camera "
              "has 0\n"_qs.arg(file));
    EXPECT_FALSE(QFile::exists(path(u"a.png"_qs)));
}

TEST_F(ProfileCommand, makes_the_folder_it_is_saved_in) {
    const QString deep = path(u"deep/down/a.json"_qs);
    const CtlResult result = run({u"profile"_qs, u"save"_qs, deep, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json, QJsonObject({{u"camera"_qs, smallCameraId}, {u"file"_qs, deep}}));
    EXPECT_TRUE(QFile::exists(deep));
}

TEST_F(ProfileCommand, that_cannot_be_saved_is_detected_before_the_camera_is_touched) {
    ASSERT_TRUE(QDir().mkpath(file));
    const CtlResult result = profile(u"save"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"it is a folder"_qs)) << result.errors.toStdString();
    EXPECT_EQ(readFile(path(u"journal"_qs)), QByteArray());
}

TEST_F(ProfileCommand, stays_as_it_was_if_the_new_one_cannot_be_written) {
    writeFile(file, "old");
    CtlProcess process({u"profile"_qs, u"save"_qs, file, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs))});
    process.with([] { limitFileSize(64); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray errors = process.errors();
    EXPECT_TRUE(errors.contains("cannot save \"" + file.toUtf8() + "\": File too large"))
        << errors.toStdString();
    EXPECT_EQ(readFile(file), QByteArray("old"));
    EXPECT_EQ(QDir(path(QString())).entryList({u"a.json*"_qs}, QDir::Files),
              QStringList{u"a.json"_qs});
}

TEST_F(ProfileCommand, of_a_camera_that_no_longer_answers_leaves_the_old_file_alone) {
    writeFile(file, "mine");
    scene.addFaults(silence());
    const CtlResult result = profile(u"save"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.errors.endsWith(
        u"pcdctl: cannot save \"%1\": the camera no longer answers\n"_qs.arg(file)))
        << result.errors.toStdString();
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(ProfileCommand, with_one_value_that_was_not_read_is_not_saved) {
    writeFile(file, "mine");
    scene.addFault(failing(u"Toupcam_get_Hue"_qs));
    const CtlResult result = profile(u"save"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              u"pcdctl: cannot save \"%1\": the camera did not report hue\n"_qs.arg(file));
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(ProfileCommand, replaces_the_file_if_and_only_if_it_succeeds_whenever_the_camera_is_lost) {
    const QString read = u"Toupcam_get_ResolutionNumber"_qs;
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    const auto reads = QString::fromUtf8(readFile(path(u"journal"_qs))).count(read + u'(');
    ASSERT_GT(reads, 1);
    const CtlScene whole = scene;
    for (int skip = 0; skip <= int(reads); ++skip) {
        scene = whole;
        QJsonObject loss = failing(read);
        loss.insert(u"skip"_qs, skip);
        scene.addFault(loss);
        writeFile(file, "mine");
        const bool isDone = profile(u"save"_qs).exitCode == 0;
        EXPECT_EQ(readFile(file) != "mine", isDone) << skip;
    }
}

TEST_F(ProfileCommand, is_not_compared_with_values_that_were_not_read) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    scene.addFault(failing(u"Toupcam_get_Hue"_qs));
    const CtlResult result = profile(u"diff"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, u"pcdctl: camera Small-S0001: the camera did not report hue\n"_qs);
}

TEST_F(ProfileCommand, is_loaded_except_for_a_value_that_the_camera_does_not_report) {
    ASSERT_EQ(profile(u"save"_qs, {u"--set"_qs, u"gamma=150"_qs}).exitCode, 0);
    scene.addFault(failing(u"Toupcam_get_Hue"_qs));
    const CtlResult result = profile(u"load"_qs, {u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, u"pcdctl: hue: the camera did not report it\n"_qs);
    EXPECT_EQ(idsIn(result.json.value(u"refused"_qs)), QStringList{u"hue"_qs});
    EXPECT_TRUE(calls().contains(u"Toupcam_put_Gamma(h1, 150)"_qs));
    EXPECT_FALSE(calls().join(u' ').contains(u"put_Hue"_qs));
}

TEST_F(ProfileCommand, of_an_earlier_version_is_loaded_except_for_a_field_out_of_its_range) {
    ASSERT_EQ(profile(u"save"_qs, {u"--set"_qs, u"gamma=150"_qs}).exitCode, 0);
    edit("\"seconds\": 5", "\"seconds\": -5");
    const CtlResult result = profile(u"load"_qs);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(
        result.errors.startsWith(u"pcdctl: extexposure.seconds: cannot be -5: expected "_qs))
        << result.errors.toStdString();
    EXPECT_TRUE(calls().contains(u"Toupcam_put_Gamma(h1, 150)"_qs));
}

TEST_F(ProfileCommand, holds_no_zero_whichever_one_reading_fails) {
    ASSERT_EQ(profile(u"save"_qs).exitCode, 0);
    const QByteArray sound = readFile(file);
    const CtlScene whole = scene;
    for (const QJsonObject& fault : silence()) {
        if (fault == failing(u"Toupcam_get_MaxSpeed"_qs))
            continue; // the camera is then opened with another speed
        scene = whole;
        scene.addFault(fault);
        writeFile(file, "mine");
        const CtlResult result = profile(u"save"_qs);
        EXPECT_EQ(readFile(file), result.exitCode == 0 ? sound : QByteArray("mine"))
            << fault.value(u"function"_qs).toString().toStdString();
    }
}

} // namespace
