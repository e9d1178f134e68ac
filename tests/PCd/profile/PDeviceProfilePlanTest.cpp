// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfilePlan.h>

#include <PCd/profile/ProfileDevice.h>

#include <PCd/profile/PDeviceProfileFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

namespace {

using Mode = PDeviceProfilePlan::Mode;

QStringList toLines(const QList<PDeviceProfileReport::Item>& items) {
    QStringList lines;
    for (const PDeviceProfileReport::Item& item : items)
        lines.append(QString::fromUtf8(item.id) + u": "_qs + item.reason);
    return lines;
}

class PDeviceProfilePlanTest : public FolderTest {
protected:
    const QString file = path(u"a.json"_qs);
    ProfileDevice camera;

    /// Reads a profile, makes a plan of it for the device and applies it; stops at the first
    /// failure.
    PStatus load(ProfileDevice& to, Mode mode = Mode::OfProfile) {
        PDeviceProfile profile;
        PStatus status = PDeviceProfileFile::read(file, profile);
        if (!status.isOk())
            return status;
        PDeviceProfilePlan plan(to.device, mode);
        status = plan.make(profile);
        EXPECT_EQ(to.sent, QStringList()) << "sent by make()";
        if (status.isOk())
            report = plan.apply();
        return status;
    }
    PStatus loadText(const QByteArray& text, Mode mode = Mode::OfProfile) {
        writeFile(file, text);
        return load(camera, mode);
    }

    PDeviceProfileReport report;
};

TEST_F(PDeviceProfilePlanTest, refuses_only_what_the_camera_does_not_report) {
    camera.changeAll();
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    ProfileDevice other;
    other.contrast->failsToRead = true;
    ASSERT_TRUE(load(other).isOk());
    EXPECT_EQ(toLines(report.refused), QStringList{u"contrast: the camera did not report it"_qs});
    EXPECT_FALSE(other.sent.contains(u"contrast"_qs));
    EXPECT_EQ(other.hue->inDevice, QVariant(-30));
    EXPECT_EQ(other.roi->inDevice, QVariant(QRect(4, 8, 100, 200)));
}

TEST_F(PDeviceProfilePlanTest, reads_only_what_is_in_the_profile) {
    camera.hidden->failsToRead = true;
    camera.contrast->failsToRead = true;
    camera.contrast->calls.clear();
    ASSERT_TRUE(
        loadText(profileText("\"hue\": {\"value\": 9},\n\"hidden\": {\"value\": 4}")).isOk());
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(camera.contrast->calls, QStringList());
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
}

TEST_F(PDeviceProfilePlanTest, refuses_a_mode_that_cannot_be_read_back_and_sends_no_region) {
    camera.changeAll();
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    ProfileDevice other;
    other.device.failsToReadMode = true;
    ASSERT_TRUE(load(other).isOk());
    EXPECT_EQ(toLines(report.refused),
              QStringList{u"mode: the camera did not report whether it took it"_qs});
    EXPECT_EQ(toLines(report.ignored), QStringList{u"roi: it is a region of another mode"_qs});
    EXPECT_EQ(other.contrast->inDevice, QVariant(12));
}

TEST_F(PDeviceProfilePlanTest, refuses_the_mode_if_the_camera_does_not_report_its_modes) {
    camera.device.failsToReadModes = true;
    camera.device.mode = camera.device.modes.at(1);
    camera.roi->rangeInDevice = QVariant::fromValue(PScanAreaRange{QRect(0, 0, 320, 240)});
    ASSERT_TRUE(loadText(profileText("\"hue\": {\"value\": 9},\n"
                                     "\"roi\": {\"value\": {\"$rect\": [0, 0, 640, 480]}}",
                                     "\"mode\": \"0\",\n"))
                    .isOk());
    EXPECT_EQ(toLines(report.refused),
              QStringList{u"mode: the camera did not report its modes"_qs});
    EXPECT_EQ(toLines(report.ignored), QStringList{u"roi: it is a region of another mode"_qs});
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
}

TEST_F(PDeviceProfilePlanTest, sends_nothing_to_a_camera_that_no_longer_answers) {
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    ProfileDevice other;
    other.contrast->failsToRead = true;
    other.device.failsToReadModes = true;
    EXPECT_EQ(load(other).reason(), u"the camera no longer answers"_qs);
    EXPECT_EQ(other.sent, QStringList());
}

TEST_F(PDeviceProfilePlanTest, says_that_a_camera_has_no_modes) {
    camera.device.modes.clear();
    const PStatus status = loadText(profileText("", "\"mode\": \"1\",\n"));
    EXPECT_EQ(status.reason(), u"\"%1\": line 7: \"mode\" cannot be the text \"1\": expected none, "
                               "because the camera has no modes"_qs.arg(file));
}

TEST_F(PDeviceProfilePlanTest, reports_the_cameras_value_whatever_other_reading_fails) {
    ASSERT_TRUE(loadText(profileText("\"hue\": {\"value\": 9}")).isOk());
    camera.hue->becomes = 5;
    camera.contrast->failsToRead = true;
    QObject::connect(camera.hue, &PDeviceProperty::valueChanged, camera.contrast,
                     [this] { camera.contrast->updateValueFromDevice(); });
    camera.sent.clear();
    ASSERT_TRUE(loadText(profileText("\"hue\": {\"value\": 8}")).isOk());
    EXPECT_EQ(toLines(report.refused), QStringList{u"hue: requested 8, the camera has 5"_qs});
}

TEST_F(PDeviceProfilePlanTest, does_not_call_it_a_refusal_if_a_value_cannot_be_read_back) {
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    PDeviceProfile profile;
    ASSERT_TRUE(PDeviceProfileFile::read(file, profile).isOk());
    PDeviceProfilePlan plan(camera.device, Mode::OfProfile);
    ASSERT_TRUE(plan.make(profile).isOk());
    camera.hue->failsToRead = true;
    EXPECT_EQ(toLines(plan.apply().refused),
              QStringList(u"hue: the camera did not report whether it took it"_qs));
}

TEST_F(PDeviceProfilePlanTest, brings_everything_back_that_was_saved) {
    ProfileDevice before;
    before.changeAll();
    before.exposure->inDevice = QVariant::fromValue(StreamedPair{7, 5});
    ASSERT_TRUE(PDeviceProfileFile::save(before.device, file).isOk());
    ASSERT_NE(camera.state(), before.state());
    ASSERT_TRUE(load(camera).isOk());
    EXPECT_EQ(camera.state(), before.state());
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(report.ignored.size(), 0);
    EXPECT_EQ(report.missing, QList<QByteArray>());
    EXPECT_EQ(report.note, QString());
}

TEST_F(PDeviceProfilePlanTest, sends_mode_switches_choices_composites_numbers_and_the_region_last) {
    ProfileDevice before;
    before.changeAll();
    ASSERT_TRUE(PDeviceProfileFile::save(before.device, file).isOk());
    ASSERT_TRUE(load(camera).isOk());
    const QStringList order{u"mode"_qs,     u"rotate"_qs, u"negative"_qs, u"exposure"_qs,
                            u"contrast"_qs, u"hue"_qs,    u"roi"_qs};
    EXPECT_EQ(camera.sent, order);
    EXPECT_EQ(report.applied, QList<QByteArray>({"mode", "rotate", "negative", "exposure",
                                                 "contrast", "hue", "roi"}));
}

TEST_F(PDeviceProfilePlanTest, does_not_set_a_mode_that_is_set) {
    ASSERT_TRUE(loadText(profileText("", "\"mode\": \"0\",\n")).isOk());
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfilePlanTest, leaves_alone_what_a_composite_does_not_save) {
    ASSERT_TRUE(
        loadText(profileText("\"exposure\": {\"value\": {\"$bytes\": \"AAAABw==\"}}")).isOk());
    EXPECT_EQ(camera.exposure->inDevice.value<StreamedPair>().saved, 7);
    EXPECT_EQ(camera.exposure->inDevice.value<StreamedPair>().leftOut, 5);
}

TEST_F(PDeviceProfilePlanTest, takes_a_region_that_fits_the_mode_of_the_profile_only) {
    camera.device.setMode(camera.device.modes.at(1));
    camera.sent.clear();
    ASSERT_TRUE(loadText(profileText("\"roi\": {\"value\": {\"$rect\": [0, 0, 640, 480]}}",
                                     "\"mode\": \"0\",\n"))
                    .isOk());
    EXPECT_EQ(camera.roi->inDevice, QVariant(QRect(0, 0, 640, 480)));
    EXPECT_TRUE(report.isComplete());
}

TEST_F(PDeviceProfilePlanTest, refuses_a_region_that_fits_the_present_mode_only) {
    const PStatus status = loadText(
        profileText("\"roi\": {\"value\": {\"$rect\": [0, 0, 640, 480]}}", "\"mode\": \"1\",\n"));
    EXPECT_TRUE(status.reason().contains(
        u"line 9: \"roi\" cannot be 0,0,640,480: expected a region x,y,width,height "
        "inside 0,0,320,240"_qs))
        << status.reason().toStdString();
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfilePlanTest, leaves_mode_and_region_alone_on_request) {
    ASSERT_TRUE(loadText(profileText("\"roi\": {\"value\": {\"$rect\": [0, 0, 320, 240]}},\n"
                                     "\"hue\": {\"value\": 9}",
                                     "\"mode\": \"1\",\n"),
                         Mode::AsItIs)
                    .isOk());
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
    EXPECT_EQ(toLines(report.ignored), QStringList{u"roi: it is a region of another mode"_qs});
    EXPECT_TRUE(report.isComplete());
}

TEST_F(PDeviceProfilePlanTest, sets_a_region_of_the_mode_that_it_is_to_leave) {
    ASSERT_TRUE(loadText(profileText("\"roi\": {\"value\": {\"$rect\": [0, 0, 320, 240]}}",
                                     "\"mode\": \"0\",\n"),
                         Mode::AsItIs)
                    .isOk());
    EXPECT_EQ(camera.roi->inDevice, QVariant(QRect(0, 0, 320, 240)));
}

struct WrongValueRow {
    const char* name;
    const char* properties;
    const char* reason;
};

class WrongValue : public PDeviceProfilePlanTest, public WithRow<WrongValueRow> {};

ROW_TEST(WrongValue, is_named_with_its_line_and_nothing_is_set) {
    const QStringList before = camera.state();
    const QByteArray properties = QByteArray("\"hue\": {\"value\": 9},\n") + GetParam().properties;
    const PStatus status = loadText(profileText(properties, "\"mode\": \"1\",\n"));
    EXPECT_EQ(status.reason(),
              u"\"%1\": line 10: %2"_qs.arg(file, QString::fromUtf8(GetParam().reason)));
    EXPECT_EQ(camera.state(), before);
    EXPECT_EQ(camera.sent, QStringList());
}

const WrongValueRow wrongValues[] = {
    {"a_number_above_its_range", "\"contrast\": {\"value\": 101}",
     "\"contrast\" cannot be 101: expected a whole number from -100 to 100"},
    {"a_number_below_its_range", "\"contrast\": {\"value\": -101}",
     "\"contrast\" cannot be -101: expected a whole number from -100 to 100"},
    {"a_text_for_a_number", "\"contrast\": {\"value\": \"12\"}",
     "\"contrast\" cannot be the text \"12\": expected a whole number from -100 to 100"},
    {"a_broken_number", "\"contrast\": {\"value\": 12.0}",
     "\"contrast\" cannot be 12 with a decimal point: expected a whole number from -100 to 100"},
    {"a_switch_for_a_number", "\"contrast\": {\"value\": true}",
     "\"contrast\" cannot be on: expected a whole number from -100 to 100"},
    {"a_number_for_a_switch", "\"negative\": {\"value\": 1}",
     "\"negative\" cannot be 1: expected on or off"},
    {"an_unknown_choice", "\"rotate\": {\"value\": \"45\"}",
     "\"rotate\" cannot be the text \"45\": expected one of \"0°\", \"90°\""},
    {"a_number_for_a_choice", "\"rotate\": {\"value\": 90}",
     "\"rotate\" cannot be 90: expected one of \"0°\", \"90°\""},
    {"too_few_bytes", "\"exposure\": {\"value\": {\"$bytes\": \"AAAA\"}}",
     "\"exposure\" cannot be these bytes: expected a value of type StreamedPair"},
    {"too_many_bytes", "\"exposure\": {\"value\": {\"$bytes\": \"AAAABwAAAAc=\"}}",
     "\"exposure\" cannot be these bytes: expected a value of type StreamedPair"},
    {"a_region_as_large_as_can_be",
     "\"roi\": {\"value\": {\"$rect\": [-2147483648, -2147483648, 4294967296, 4294967296]}}",
     "\"roi\" cannot be -2147483648,-2147483648,4294967296,4294967296: expected a region "
     "x,y,width,height inside 0,0,320,240, at least 4 x 4 pixels, in steps of 4 x 4, or the "
     "whole area"},
};

ROWS_IN(PDeviceProfilePlan, WrongValue, wrongValues);

TEST_F(PDeviceProfilePlanTest, refuses_a_mode_that_this_model_does_not_have) {
    const PStatus status = loadText(profileText("\"hue\": {\"value\": 9}", "\"mode\": \"7\",\n"));
    EXPECT_EQ(status.reason(), u"\"%1\": line 7: \"mode\" cannot be the text \"7\": "
                               "expected one of \"0\" (640x480), \"1\" (320x240)"_qs.arg(file));
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfilePlanTest, of_another_model_sets_what_this_camera_can_have) {
    ASSERT_TRUE(loadText(profileText("\"contrast\": {\"value\": 500},\n"
                                     "\"rotate\": {\"value\": \"45\"},\n"
                                     "\"roi\": {\"value\": {\"$rect\": [0, 0, 8, 8]}},\n"
                                     "\"hue\": {\"value\": 9}",
                                     "\"mode\": \"7\",\n", "Other"))
                    .isOk());
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
    EXPECT_EQ(toLines(report.refused),
              (QStringList{u"mode: cannot be the text \"7\": expected one of \"0\" (640x480), "
                           "\"1\" (320x240)"_qs,
                           u"contrast: cannot be 500: expected a whole number from -100 to "
                           "100"_qs,
                           u"rotate: cannot be the text \"45\": expected one of \"0°\", "
                           "\"90°\""_qs}));
    EXPECT_EQ(toLines(report.ignored), QStringList{u"roi: it is a region of another mode"_qs});
    EXPECT_EQ(report.note, u"saved from another camera: Other, serial number 1; this "
                           "one is Fake, serial number 1"_qs);
}

TEST_F(PDeviceProfilePlanTest, of_another_model_is_damaged_by_a_value_of_another_type) {
    const PStatus status = loadText(profileText("\"hue\": {\"value\": 9},\n"
                                                "\"contrast\": {\"value\": \"12\"}",
                                                "", "Other"));
    EXPECT_TRUE(status.reason().contains(u"line 9: \"contrast\" cannot be"_qs));
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfilePlanTest, of_another_serial_number_says_so_and_sets_all) {
    ProfileDevice other("Fake", "2");
    other.changeAll();
    ASSERT_TRUE(PDeviceProfileFile::save(other.device, file).isOk());
    ASSERT_TRUE(load(camera).isOk());
    EXPECT_TRUE(report.isComplete());
    EXPECT_TRUE(report.note.contains(u"serial number 2"_qs)) << report.note.toStdString();
}

TEST_F(PDeviceProfilePlanTest, reports_a_property_that_the_camera_lacks_and_sets_the_rest) {
    ASSERT_TRUE(loadText(profileText("\"fan\": {\"value\": 1},\n\"hue\": {\"value\": 9}")).isOk());
    EXPECT_EQ(toLines(report.refused), QStringList{u"fan: the camera has no such property"_qs});
    EXPECT_EQ(camera.hue->inDevice, QVariant(9));
}

TEST_F(PDeviceProfilePlanTest, names_a_property_of_any_language_that_the_camera_lacks) {
    ASSERT_TRUE(loadText(profileText("\"цвет\": {\"value\": 1}")).isOk());
    EXPECT_EQ(toLines(report.refused), QStringList{u"цвет: the camera has no such property"_qs});
}

TEST_F(PDeviceProfilePlanTest, names_what_is_not_in_the_profile_and_leaves_it_alone) {
    ASSERT_TRUE(loadText(profileText("\"hue\": {\"value\": 9}")).isOk());
    EXPECT_EQ(report.missing,
              QList<QByteArray>({"roi", "contrast", "exposure", "rotate", "negative"}));
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
}

TEST_F(PDeviceProfilePlanTest, never_runs_an_action) {
    ASSERT_TRUE(
        loadText(profileText("\"whiten\": {\"value\": 1},\n\"hue\": {\"value\": 9}")).isOk());
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
    EXPECT_EQ(toLines(report.ignored),
              QStringList{u"whiten: it is an action, which a profile never runs"_qs});
}

TEST_F(PDeviceProfilePlanTest, never_sets_what_profiles_do_not_hold) {
    ASSERT_TRUE(
        loadText(profileText("\"hidden\": {\"value\": 1},\n\"hue\": {\"value\": 9}")).isOk());
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
    EXPECT_EQ(toLines(report.ignored),
              QStringList{u"hidden: profiles do not hold this property"_qs});
}

TEST_F(PDeviceProfilePlanTest, reports_what_the_camera_refuses_and_sets_the_rest) {
    camera.contrast->refuses = true;
    ASSERT_TRUE(
        loadText(profileText("\"contrast\": {\"value\": 12},\n\"hue\": {\"value\": 9}")).isOk());
    EXPECT_EQ(toLines(report.refused), QStringList{u"contrast: requested 12, the camera has 0"_qs});
    EXPECT_EQ(report.applied, QList<QByteArray>{"hue"});
    EXPECT_EQ(camera.hue->inDevice, QVariant(9));
}

TEST_F(PDeviceProfilePlanTest, reports_what_the_camera_changes_to_another_value) {
    camera.rotate->becomes = ProfileDevice::turn(0);
    ASSERT_TRUE(loadText(profileText("\"rotate\": {\"value\": \"90\"}")).isOk());
    EXPECT_EQ(toLines(report.refused), QStringList{u"rotate: requested 90°, the camera has 0°"_qs});
}

TEST_F(PDeviceProfilePlanTest, does_not_set_a_region_if_its_mode_is_refused) {
    camera.device.refusesMode = true;
    ASSERT_TRUE(loadText(profileText("\"roi\": {\"value\": {\"$rect\": [0, 0, 320, 240]}},\n"
                                     "\"hue\": {\"value\": 9}",
                                     "\"mode\": \"1\",\n"))
                    .isOk());
    EXPECT_EQ(toLines(report.refused),
              QStringList{u"mode: the device refused the mode 320x240"_qs});
    EXPECT_EQ(toLines(report.ignored), QStringList{u"roi: it is a region of another mode"_qs});
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
}

TEST_F(PDeviceProfilePlanTest, is_not_damage_if_the_camera_itself_is_out_of_its_range) {
    camera.contrast->inDevice = 500;
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    ASSERT_TRUE(load(camera).isOk());
    EXPECT_TRUE(report.isComplete());
    EXPECT_FALSE(camera.sent.contains(u"contrast"_qs));
    EXPECT_EQ(toLines(report.ignored),
              QStringList{u"contrast: the camera already has this value, which is "
                          "outside its range"_qs});
}

TEST_F(PDeviceProfilePlanTest, of_a_damaged_profile_sends_nothing_even_on_request) {
    writeFile(file, profileText("\"hue\": {\"value\": 9},\n\"contrast\": {\"value\": 101}",
                                "\"mode\": \"1\",\n"));
    PDeviceProfile profile;
    ASSERT_TRUE(PDeviceProfileFile::read(file, profile).isOk());
    PDeviceProfilePlan plan(camera.device);
    ASSERT_FALSE(plan.make(profile).isOk());
    plan.apply();
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfilePlanTest, sends_its_values_once) {
    writeFile(file, profileText("\"hue\": {\"value\": 9}"));
    PDeviceProfile profile;
    ASSERT_TRUE(PDeviceProfileFile::read(file, profile).isOk());
    PDeviceProfilePlan plan(camera.device);
    ASSERT_TRUE(plan.make(profile).isOk());
    plan.apply();
    plan.apply();
    EXPECT_EQ(camera.sent, QStringList{u"hue"_qs});
}

TEST_F(PDeviceProfilePlanTest, made_again_sends_nothing_of_the_profile_before) {
    writeFile(file, profileText("\"hue\": {\"value\": 9}"));
    PDeviceProfile first;
    ASSERT_TRUE(PDeviceProfileFile::read(file, first).isOk());
    writeFile(file, profileText("\"contrast\": {\"value\": 3}"));
    PDeviceProfile second;
    ASSERT_TRUE(PDeviceProfileFile::read(file, second).isOk());
    PDeviceProfilePlan plan(camera.device);
    ASSERT_TRUE(plan.make(first).isOk());
    ASSERT_TRUE(plan.make(second).isOk());
    plan.apply();
    EXPECT_EQ(camera.sent, QStringList{u"contrast"_qs});
}

} // namespace
