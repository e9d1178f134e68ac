// SPDX-License-Identifier: MIT
// pcdctl set and get, and --set.
#include <apps/pcdctl/CameraCommandTest.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>
#include <support/WaitUntil.h>

#include <QImage>
#include <QJsonArray>
#include <QRegularExpression>

#include <csignal>

namespace {

class SetCommand : public CameraCommandTest {};

struct SettingRow {
    const char* name;
    const char* setting; ///< as the user types it
    const char* call;    ///< what reaches the camera
    const char* value;   ///< the camera's value after that, as shown
};

const SettingRow settings[] = {
    {"autoexposure", "autoexponeable=on", "put_AutoExpoEnable(h1, 1)", "on"},
    {"target", "autoexpotarget=100", "put_AutoExpoTarget(h1, 100)", "100"},
    {"time", "autoexpottime=2000", "put_ExpoTime(h1, 2000)", "2000"},
    {"gain", "autoexpogain=200", "put_ExpoAGain(h1, 200)", "200"},
    {"tint", "tint=1200", "put_TempTint(h1, 6503, 1200)", "1200"},
    {"temperature", "temp=5000", "put_TempTint(h1, 5000, 1000)", "5000"},
    {"contrast", "contrast=-12", "put_Contrast(h1, -12)", "-12"},
    {"hue", "hue=-30", "put_Hue(h1, -30)", "-30"},
    {"saturation", "saturation=200", "put_Saturation(h1, 200)", "200"},
    {"brightness", "brightness=20", "put_Brightness(h1, 20)", "20"},
    {"gamma", "gamma=150", "put_Gamma(h1, 150)", "150"},
    {"negative", "negative=on", "put_Negative(h1, 1)", "on"},
    {"negative_off", "negative=off", "put_Negative(h1, 0)", "off"},
    {"chrome", "chrome=true", "put_Chrome(h1, 1)", "on"},
    {"vertical_flip", "vflip=1", "put_VFlip(h1, 1)", "on"},
    {"horizontal_flip", "hflip=ON", "put_HFlip(h1, 1)", "on"},
    {"speed", "speed=1", "put_Speed(h1, 1)", "1"},
    {"region", "roi=8,16,100,40", "put_Roi(h1, 8, 16, 100, 40)", "8,16,100,40"},
    {"colour_matrix_off", "colormatrix=Disable", "put_Option(h1, 13, 0)", "Disable"},
    {"colour_matrix_on", "colormatrix=1", "put_Option(h1, 13, 1)", "Enable"},
    {"white_balance_gains_off", "wbgain=disable", "put_Option(h1, 14, 0)", "Disable"},
    {"white_balance_gains_on", "wbgain=Enable", "put_Option(h1, 14, 1)", "Enable"},
    {"no_binning", "binning=No binning", "put_Option(h1, 23, 1)", "No binning"},
    {"binning_added_2x2", "binning=Add 2x2", "put_Option(h1, 23, 2)", "Add 2x2"},
    {"binning_added_3x3", "binning=3", "put_Option(h1, 23, 3)", "Add 3x3"},
    {"binning_added_4x4", "binning=add 4x4", "put_Option(h1, 23, 4)", "Add 4x4"},
    {"binning_averaged_2x2", "binning=130", "put_Option(h1, 23, 130)", "Average 2x2"},
    {"binning_averaged_3x3", "binning=Average 3x3", "put_Option(h1, 23, 131)", "Average 3x3"},
    {"binning_averaged_4x4", "binning=Average 4x4", "put_Option(h1, 23, 132)", "Average 4x4"},
    {"no_turn", "rotate=0", "put_Option(h1, 24, 0)", "0°"},
    {"a_quarter_turn", "rotate=90", "put_Option(h1, 24, 90)", "90°"},
    {"a_half_turn", "rotate=180°", "put_Option(h1, 24, 180)", "180°"},
    {"three_quarters_of_a_turn", "rotate=270", "put_Option(h1, 24, 270)", "270°"},
};

class Setting : public SetCommand, public WithRow<SettingRow> {
protected:
    const QString setting = QString::fromUtf8(GetParam().setting);
    const QString id = setting.section(u'=', 0, 0);
    const QString call = u"Toupcam_"_qs + QLatin1String(GetParam().call);
    const QByteArray line = id.toUtf8() + '=' + GetParam().value + '\n';
};

ROW_TEST(Setting, reaches_the_camera_as_one_call_and_is_shown) {
    const CtlResult result = run({u"set"_qs, setting});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(calls(), QStringList{call});
    EXPECT_EQ(result.output, line);
}

ROW_TEST(Setting, is_given_back_by_get) {
    const CtlResult result = run({u"get"_qs, id, u"--set"_qs, setting});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(calls(), QStringList{call});
    EXPECT_EQ(result.output, line);
}

ROWS_IN(Pcdctl, Setting, settings);

/// Settings with every number of the camera at this end of its range.
QStringList numbersAt(const QJsonArray& properties, const QString& end) {
    QStringList words;
    for (const QJsonValue& property : properties) {
        if (property[u"range"_qs].isObject()) {
            words.append(u"%1=%2"_qs.arg(property[u"id"_qs].toString(),
                                         QString::number(property[u"range"_qs][end].toInt())));
        }
    }
    return words;
}

TEST_F(SetCommand, takes_both_ends_of_every_range) {
    const QJsonArray properties =
        run({u"props"_qs, u"--json"_qs}).json.value(u"properties"_qs).toArray();
    for (const QString& end : {u"minimum"_qs, u"maximum"_qs}) {
        const QStringList words = numbersAt(properties, end);
        ASSERT_EQ(words.size(), 12);
        const CtlResult result = run(QStringList{u"set"_qs} + words);
        EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
        EXPECT_EQ(QString::fromUtf8(result.output), words.join(u'\n') + u'\n');
    }
}

TEST_F(SetCommand, sets_several_in_the_order_given) {
    const CtlResult result = run({u"set"_qs, u"gamma=50"_qs, u"negative=on"_qs, u"contrast=1"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(calls(),
              (QStringList{u"Toupcam_put_Gamma(h1, 50)"_qs, u"Toupcam_put_Negative(h1, 1)"_qs,
                           u"Toupcam_put_Contrast(h1, 1)"_qs}));
    EXPECT_EQ(result.output, QByteArray("gamma=50\nnegative=on\ncontrast=1\n"));
}

TEST_F(SetCommand, prints_typed_values_as_json) {
    const CtlResult result = run({u"set"_qs, u"gamma=50"_qs, u"negative=on"_qs, u"rotate=90"_qs,
                                  u"roi=0,0,8,4"_qs, u"--json"_qs});
    const QJsonObject region{{u"x"_qs, 0}, {u"y"_qs, 0}, {u"width"_qs, 8}, {u"height"_qs, 4}};
    EXPECT_EQ(result.json, QJsonObject({{u"camera"_qs, smallCameraId},
                                        {u"properties"_qs, QJsonObject{{u"gamma"_qs, 50},
                                                                       {u"negative"_qs, true},
                                                                       {u"rotate"_qs, u"90"_qs},
                                                                       {u"roi"_qs, region}}},
                                        {u"refused"_qs, QJsonArray()}}))
        << result.output.toStdString();
}

struct WrongSettingRow {
    const char* name;
    const char* words; ///< with semicolons between them
    const char* message;
};

class WrongSetting : public SetCommand, public WithRow<WrongSettingRow> {};

ROW_TEST(WrongSetting, is_named_with_code_2_before_anything_reaches_the_camera) {
    const QStringList words = QString::fromUtf8(GetParam().words).split(u';');
    const CtlResult result = run(QStringList{u"set"_qs, u"gamma=50"_qs} + words);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.contains(QString::fromUtf8(GetParam().message)))
        << result.errors.toStdString();
    EXPECT_EQ(calls(), QStringList());
}

const WrongSettingRow wrongSettings[] = {
    {"an_unknown_property", "colour=1", "the camera has no property \"colour\": expected one of"},
    {"a_property_spelled_wrongly", "contrst=1",
     "the camera has no property \"contrst\": did you mean contrast? expected one of"},
    {"the_beginning_of_two_ids", "autoexpo=1", "did you mean autoexponeable or autoexpotarget or"},
    {"no_property", "=1", "the camera has no property \"\""},
    {"above_the_range", "contrast=101",
     "\"contrast\" cannot be 101: expected a whole number from -100 to 100"},
    {"below_the_range", "temp=1999",
     "\"temp\" cannot be 1999: expected a whole number from 2000 to 15000"},
    {"beyond_32_bits", "contrast=99999999999",
     "\"contrast\" cannot be \"99999999999\": expected a whole number from -100 to 100"},
    {"a_word_for_a_number", "contrast=much",
     "\"contrast\" cannot be \"much\": expected a whole number from -100 to 100"},
    {"an_empty_value", "contrast=", "\"contrast\" cannot be \"\": expected a whole number"},
    {"no_value", "contrast",
     "\"contrast\" needs a value: expected contrast=VALUE, a whole number from -100 to 100"},
    {"a_word_for_a_switch", "vflip=maybe", "\"vflip\" cannot be \"maybe\": expected on or off"},
    {"an_unknown_choice", "rotate=45",
     "\"rotate\" cannot be \"45\": expected one of \"0°\", \"90°\", \"180°\", \"270°\""},
    {"a_region_outside", "roi=0,0,324,240",
     "\"roi\" cannot be 0,0,324,240: expected a region x,y,width,height inside 0,0,320,240"},
    {"a_region_between_the_steps", "roi=0,0,10,4", "\"roi\" cannot be 0,0,10,4: expected"},
    {"half_a_region", "roi=0,0,8", "\"roi\" cannot be \"0,0,8\": expected a region"},
    {"a_value_for_an_action", "awbonce=1", "\"awbonce\" is an action and takes no value"},
    {"a_field_below_its_range", "extexposure.minutes=-2147483648",
     "\"extexposure\": \"minutes\" cannot be \"-2147483648\": expected a whole number from 0 to "
     "71"},
    {"a_field_above_its_range", "extexposure.triggermode=90",
     "\"extexposure\": \"triggermode\" cannot be \"90\": expected a whole number from 0 to 1"},
    {"no_time", "extexposure.exp=-1",
     "\"extexposure\": \"exp\" cannot be \"-1\": expected a number from 0 to 4294967"},
    {"a_property_twice", "contrast=1;contrast=2", "\"contrast\" is given twice"},
};

ROWS_IN(Pcdctl, WrongSetting, wrongSettings);

TEST_F(SetCommand, a_cooler_and_a_fan_can_only_be_on_or_off) {
    scene.set(u"flags"_qs, QJsonArray{u"FAN"_qs, u"TEC_ONOFF"_qs}).set(u"fanLevels"_qs, 3);
    // A fan that cannot be read is at -1, which a profile may hold.
    const QMap<QString, QString> expected{{u"fan.enable"_qs, u"from -1 to 1"_qs},
                                          {u"teccontrol.on"_qs, u"from 0 to 1"_qs}};
    for (auto field = expected.begin(); field != expected.end(); ++field) {
        const CtlResult result = run({u"set"_qs, field.key() + u"=2"_qs});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_TRUE(result.errors.contains(u"expected a whole number "_qs + field.value()))
            << result.errors.toStdString();
    }
}

TEST_F(SetCommand, a_signal_says_that_it_waits_for_a_call_that_hangs_and_another_ends_it) {
    scene.addFault(hanging(u"Toupcam_put_Gamma"_qs));
    CtlProcess process({u"set"_qs, u"contrast=1"_qs, u"gamma=50"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs))});
    const QString journal = path(u"journal"_qs);
    process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal).start();
    ASSERT_TRUE(waitUntil([&] { return readFile(journal).contains("Toupcam_put_Contrast"); }));
    process.sendSignal(SIGINT);
    EXPECT_TRUE(process.waitForErrors("still waiting for the camera to return"));
    EXPECT_TRUE(process.isRunning());
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), -1);
}

TEST_F(SetCommand, a_call_that_hangs_is_named_and_the_first_signal_says_that_it_waits_for_it) {
    scene.addFault(hanging(u"Toupcam_put_Gamma"_qs));
    CtlProcess process({u"set"_qs, u"gamma=50"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs))});
    process.with(u"PCD_CALL_SECONDS"_qs, u"0.1"_qs).start();
    ASSERT_TRUE(process.waitForErrors("pcdctl: waiting for Toupcam_put_Gamma(0x"));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.waitForErrors("pcdctl: still waiting for Toupcam_put_Gamma(0x"));
    EXPECT_TRUE(process.isRunning());
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.waitForErrors("pcdctl: ended while waiting for Toupcam_put_Gamma(0x"));
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), -1);
}

TEST_F(SetCommand, a_call_that_returns_late_is_reported_with_its_arguments_and_its_time) {
    scene.addFault(
        {{u"do"_qs, u"delay"_qs}, {u"function"_qs, u"Toupcam_put_Gamma"_qs}, {u"ms"_qs, 1000}});
    const CtlResult result =
        runCtl({u"set"_qs, u"gamma=50"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                scene.writeTo(path(u"scene.json"_qs))},
               [](CtlProcess& process) { process.with(u"PCD_CALL_SECONDS"_qs, u"0.1"_qs); });
    EXPECT_EQ(result.exitCode, 0);
    const QRegularExpression lines(
        u"^pcdctl: waiting for Toupcam_put_Gamma\\(0x[0-9a-f]+, 50\\) to return, [0-9.]+ s so far\n"
        "(pcdctl: waiting .*\n)*"
        "pcdctl: Toupcam_put_Gamma\\(0x[0-9a-f]+, 50\\) has returned after [0-9.]+ s\n$"_qs);
    EXPECT_TRUE(lines.match(result.errors).hasMatch()) << result.errors.toStdString();
}

TEST_F(SetCommand, says_what_the_camera_has_instead_and_sets_the_rest) {
    scene.addFault(failing(u"Toupcam_put_Contrast"_qs)).addFault(failing(u"Toupcam_put_VFlip"_qs));
    const CtlResult result = run({u"set"_qs, u"contrast=12"_qs, u"vflip=on"_qs, u"gamma=50"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(
        result.errors,
        u"pcdctl: contrast: requested 12, the camera has 0\nvflip: requested on, the camera has "
        "off\n"_qs);
    EXPECT_EQ(result.output, QByteArray("contrast=0\nvflip=off\ngamma=50\n"));
}

TEST_F(SetCommand, runs_a_white_balance_in_a_stream_and_shows_what_it_has_set) {
    // Bright, so that the sensor's offset does not matter.
    scene.set(u"exposure"_qs, QJsonObject{{u"default"_qs, 15000}, {u"auto"_qs, false}});
    scene.set(u"source"_qs, QJsonObject{{u"kind"_qs, u"flat"_qs}, {u"lightKelvin"_qs, 3000}});
    const CtlResult result = run({u"set"_qs, u"awbonce"_qs, u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(calls(),
              (QStringList{u"Toupcam_StartPushMode(h1, fn, ctx)"_qs,
                           u"Toupcam_AwbOnePush(h1, fn, ctx)"_qs, u"Toupcam_Stop(h1)"_qs}));
    const QJsonObject values = result.json.value(u"properties"_qs).toObject();
    EXPECT_EQ(values.keys(), (QStringList{u"temp"_qs, u"tint"_qs}));
    // The colour of that lamp on the sensor, within its offset and noise.
    EXPECT_NEAR(values.value(u"temp"_qs).toInt(), 3000, 200);
}

TEST_F(SetCommand, sees_the_end_of_a_white_balance_that_changes_nothing) {
    const CtlResult first = run({u"set"_qs, u"awbonce"_qs});
    ASSERT_EQ(first.exitCode, 0) << first.errors.toStdString();
    const QStringList words = QString::fromUtf8(first.output).split(u'\n', Qt::SkipEmptyParts);
    // The patches are exact, and the balance clips nothing: a second one finds the same.
    const CtlResult second = run(QStringList{u"set"_qs} + words + QStringList{u"awbonce"_qs});
    EXPECT_EQ(second.exitCode, 0) << second.errors.toStdString();
    EXPECT_EQ(second.output, first.output);
}

TEST_F(SetCommand, keeps_what_automatic_exposure_has_found_when_that_alone_is_switched_off) {
    scene.set(u"exposure"_qs, QJsonObject{{u"default"_qs, 1000}});
    scene.set(u"source"_qs, QJsonObject{{u"kind"_qs, u"flat"_qs}});
    const CtlResult result = run({u"set"_qs, u"awbonce"_qs, u"extexposure.autoexpenabled=off"_qs,
                                  u"--json"_qs}); // the balance is made in a stream
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QStringList times = calls().filter(u"Toupcam_put_ExpoTime"_qs);
    ASSERT_EQ(times.size(), 1);
    const int sent = times.first().section(u' ', 1).chopped(1).toInt();
    EXPECT_GT(sent, 2'000);
    const QJsonValue exposure = result.json.value(u"properties"_qs)[u"extexposure"_qs];
    EXPECT_EQ(exposure[u"exp"_qs].toDouble(), sent / 1000.0);
    EXPECT_FALSE(exposure[u"autoexpenabled"_qs].toBool(true));
}

TEST_F(SetCommand, gives_up_a_white_balance_that_never_ends) {
    scene.addFault(failing(u"Toupcam_AwbOnePush"_qs));
    const CtlResult result = run({u"set"_qs, u"awbonce"_qs, u"--timeout=0.5"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(
        u"camera Small-S0001 did not send a report that \"awbonce\" has ended in time"_qs))
        << result.errors.toStdString();
    EXPECT_TRUE(calls().contains(u"Toupcam_Stop(h1)"_qs));
}

TEST_F(SetCommand, names_a_camera_that_is_unplugged_meanwhile) {
    scene.addFault(failing(u"Toupcam_AwbOnePush"_qs)).addFault(unplugAfter(5));
    const CtlResult result = run({u"set"_qs, u"awbonce"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"camera Small-S0001 was unplugged before"_qs))
        << result.errors.toStdString();
}

TEST_F(SetCommand, of_a_snap_prepares_the_camera_before_the_stream_starts) {
    const QString file = path(u"a.png"_qs);
    const CtlResult result = run({u"snap"_qs, u"-o"_qs, file, u"--mode=1"_qs, u"--set"_qs,
                                  u"negative=on"_qs, u"--set"_qs, u"rotate=90"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(
        calls(),
        (QStringList{u"Toupcam_put_eSize(h1, 1)"_qs, u"Toupcam_put_Negative(h1, 1)"_qs,
                     u"Toupcam_put_Option(h1, 24, 90)"_qs, u"Toupcam_StartPushMode(h1, fn, ctx)"_qs,
                     u"Toupcam_Snap(h1, 1)"_qs, u"Toupcam_Stop(h1)"_qs}));
    const QImage picture(file);
    EXPECT_EQ(picture.size(), QSize(120, 160));
    EXPECT_EQ(picture.pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_EQ(picture.text(u"Negative"_qs), u"on"_qs);
}

TEST_F(SetCommand, of_a_stream_may_run_an_action_first) {
    const CtlResult result =
        run({u"stream"_qs, u"-n"_qs, u"3"_qs, u"--json"_qs, u"--set"_qs, u"awbonce"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json.value(u"frames"_qs), 3);
    EXPECT_TRUE(result.json.value(u"ledger"_qs)[u"balanced"_qs].toBool());
    EXPECT_EQ(calls().count(u"Toupcam_StartPushMode(h1, fn, ctx)"_qs), 2);
}

TEST_F(SetCommand, of_a_snap_takes_no_picture_if_a_setting_is_not_taken) {
    scene.addFault(failing(u"Toupcam_put_Contrast"_qs));
    const CtlResult result =
        run({u"snap"_qs, u"-o"_qs, path(u"a.png"_qs), u"--set"_qs, u"contrast=12"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"contrast: requested 12, the camera has 0"_qs));
    EXPECT_FALSE(calls().contains(u"Toupcam_StartPushMode(h1, fn, ctx)"_qs));
    EXPECT_FALSE(QFile::exists(path(u"a.png"_qs)));
}

TEST_F(SetCommand, of_a_stream_is_wrong_usage_where_the_value_is_wrong) {
    const CtlResult result =
        run({u"stream"_qs, u"-n"_qs, u"3"_qs, u"--set"_qs, u"contrast=500"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"\"contrast\" cannot be 500"_qs));
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_EQ(calls(), QStringList());
}

class GetCommand : public CameraCommandTest {};

TEST_F(GetCommand, prints_a_line_for_each_id) {
    const CtlResult result = run({u"get"_qs, u"roi"_qs, u"gamma"_qs, u"vflip"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, QByteArray("roi=0,0,320,240\ngamma=100\nvflip=off\n"));
    EXPECT_EQ(calls(), QStringList());
}

TEST_F(GetCommand, prints_an_object_as_json) {
    const CtlResult result = run({u"get"_qs, u"gamma"_qs, u"binning"_qs, u"--json"_qs});
    EXPECT_EQ(result.json,
              QJsonObject({{u"camera"_qs, smallCameraId},
                           {u"properties"_qs,
                            QJsonObject{{u"gamma"_qs, 100}, {u"binning"_qs, u"No binning"_qs}}}}));
}

TEST_F(GetCommand, of_an_action_is_wrong_usage) {
    const CtlResult result = run({u"get"_qs, u"awbonce"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"\"awbonce\" is an action and has no value"_qs));
}

TEST_F(GetCommand, of_an_unknown_id_is_wrong_usage_that_says_which_there_are) {
    const CtlResult result = run({u"get"_qs, u"gamma"_qs, u"sharpness"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.contains(
        u"the camera has no property \"sharpness\": expected one of extexposure, "_qs))
        << result.errors.toStdString();
}

TEST_F(GetCommand, of_a_camera_that_is_not_there_ends_with_code_3) {
    EXPECT_EQ(run({u"get"_qs, u"gamma"_qs, u"-c"_qs, u"5"_qs}).exitCode, 3);
}

TEST_F(SetCommand, get_prints_no_value_that_was_not_read_and_names_it) {
    scene.addFault(failing(u"Toupcam_get_Gamma"_qs));
    const CtlResult result = run({u"get"_qs, u"gamma"_qs, u"hue"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "hue=0\n");
    EXPECT_EQ(result.errors, u"pcdctl: camera Small-S0001: the camera did not report gamma\n"_qs);
    const CtlResult json = run({u"get"_qs, u"gamma"_qs, u"hue"_qs, u"--json"_qs});
    EXPECT_EQ(json.exitCode, 1);
    const QJsonObject values = json.json.value(u"properties"_qs).toObject();
    EXPECT_TRUE(values.value(u"gamma"_qs).isNull());
    EXPECT_EQ(values.value(u"hue"_qs), 0);
}

TEST_F(SetCommand, get_of_a_camera_that_no_longer_answers_prints_no_value) {
    scene.addFaults(silence());
    for (const char* id : {"gamma", "binning", "vflip", "roi", "extexposure", "backlight"}) {
        const CtlResult result = run({u"get"_qs, QString::fromLatin1(id)});
        EXPECT_EQ(result.exitCode, 1) << id;
        EXPECT_EQ(result.output, "") << id;
        EXPECT_TRUE(result.errors.contains(u"no longer answers"_qs)) << result.errors.toStdString();
    }
}

TEST_F(SetCommand, a_value_that_cannot_be_read_back_is_not_called_set_or_refused) {
    scene.addFault({{u"do"_qs, u"fail"_qs},
                    {u"function"_qs, u"Toupcam_get_Gamma"_qs},
                    {u"result"_qs, -2147467259},
                    {u"skip"_qs, 1}}); // the first look works
    const CtlResult result = run({u"set"_qs, u"gamma=150"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              u"pcdctl: gamma: requested 150, the camera did not report what it has\n"_qs);
}

TEST_F(SetCommand, a_setting_that_the_camera_does_not_report_is_not_wrong_usage) {
    scene.addFaults(silence());
    for (const char* setting : {"gamma=150", "vflip=on", "extexposure.gain=120"}) {
        const CtlResult result = run({u"set"_qs, QString::fromLatin1(setting)});
        EXPECT_EQ(result.exitCode, 1) << setting;
        EXPECT_TRUE(result.errors.contains(u"the camera did not report "_qs))
            << result.errors.toStdString();
    }
}

TEST_F(SetCommand, a_setting_that_the_model_lacks_is_not_a_failed_reading) {
    scene.addFault({{u"do"_qs, u"fail"_qs},
                    {u"function"_qs, u"Toupcam_get_Gamma"_qs},
                    {u"result"_qs, -2147467263}}); // E_NOTIMPL
    const CtlResult result = run({u"get"_qs, u"gamma"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "gamma=0\n");
}

TEST_F(SetCommand, a_field_is_not_sent_with_others_that_were_not_read) {
    scene.addFault({{u"do"_qs, u"fail"_qs},
                    {u"function"_qs, u"Toupcam_get_AutoExpoTarget"_qs},
                    {u"result"_qs, -2147467259},
                    {u"skip"_qs, 2}}); // the first look works, of both properties that have it
    const CtlResult result = run({u"set"_qs, u"extexposure.gain=120"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.endsWith(
        u"pcdctl: extexposure: not sent, because the camera did not report it\n"_qs))
        << result.errors.toStdString();
    EXPECT_FALSE(calls().join(u' ').contains(u"put_ExpoAGain"_qs));
}

} // namespace
