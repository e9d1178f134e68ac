// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileFile.h>

#include <PCd/profile/ProfileDevice.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>

#include <sys/stat.h>

namespace {

class PDeviceProfileFileTest : public FolderTest {
protected:
    const QString file = path(u"a.json"_qs);

    PStatus read(PDeviceProfile& profile) const { return PDeviceProfileFile::read(file, profile); }
    QString failureReason(const QByteArray& text) const {
        writeFile(file, text);
        PDeviceProfile profile;
        return read(profile).reason();
    }
};

TEST_F(PDeviceProfileFileTest, is_text_that_users_can_read_and_compare) {
    ProfileDevice camera;
    camera.changeAll();
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    EXPECT_EQ(readFile(file), QByteArray(R"({
    "format": "camera profile",
    "version": 1,
    "camera": {
        "model": "Fake",
        "serial": "1",
        "mode": "1",
        "properties": {
            "roi": {
                "value": {"$rect": [4, 8, 100, 200]}
            },
            "contrast": {
                "value": 12
            },
            "exposure": {
                "value": {"$bytes": "AAAABw=="}
            },
            "hue": {
                "value": -30
            },
            "rotate": {
                "value": "90"
            },
            "negative": {
                "value": true
            }
        }
    }
}
)"));
}

TEST_F(PDeviceProfileFileTest, holds_what_the_device_has_and_not_what_the_host_believes) {
    ProfileDevice camera;
    camera.contrast->inDevice = 44; // behind the host's back
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    EXPECT_TRUE(readFile(file).contains("\"value\": 44"));
}

TEST_F(PDeviceProfileFileTest, sends_nothing_to_the_device_when_it_is_saved) {
    ProfileDevice camera;
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfileFileTest, with_a_value_that_was_not_read_is_not_saved_and_the_old_file_stays) {
    ProfileDevice camera;
    writeFile(file, "mine");
    camera.hue->failsToRead = true;
    const PStatus status = PDeviceProfileFile::save(camera.device, file);
    EXPECT_TRUE(status.reason().endsWith(u"the camera did not report hue"_qs))
        << status.reason().toStdString();
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(PDeviceProfileFileTest, with_a_mode_that_was_not_read_is_not_saved_and_the_old_file_stays) {
    ProfileDevice camera;
    writeFile(file, "mine");
    camera.device.failsToReadMode = true;
    const PStatus status = PDeviceProfileFile::save(camera.device, file);
    EXPECT_TRUE(status.reason().endsWith(u"the camera did not report its mode"_qs))
        << status.reason().toStdString();
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(PDeviceProfileFileTest, needs_no_property_that_it_does_not_hold) {
    ProfileDevice camera;
    camera.hidden->failsToRead = true;
    camera.hidden->calls.clear();
    EXPECT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    EXPECT_EQ(camera.hidden->calls, QStringList());
}

TEST_F(PDeviceProfileFileTest, of_a_camera_that_no_longer_answers_is_not_saved) {
    ProfileDevice camera;
    writeFile(file, "mine");
    camera.device.failsToReadModes = true;
    camera.hue->failsToRead = true;
    EXPECT_EQ(PDeviceProfileFile::save(camera.device, file).reason(),
              u"cannot save \"%1\": the camera no longer answers"_qs.arg(file));
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(PDeviceProfileFileTest, replaces_an_older_one) {
    ProfileDevice camera;
    writeFile(file, QByteArray(5000, 'x'));
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    EXPECT_TRUE(readFile(file).startsWith("{\n"));
    EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files), QStringList{u"a.json"_qs});
}

TEST_F(PDeviceProfileFileTest, keeps_an_older_one_if_a_value_cannot_be_written) {
    ProfileDevice camera;
    camera.contrast->inDevice = QVariant::fromValue<void*>(nullptr);
    writeFile(file, "old");
    EXPECT_EQ(PDeviceProfileFile::save(camera.device, file).reason(),
              u"cannot save \"%1\": the camera has a value that cannot be written"_qs.arg(file));
    EXPECT_EQ(readFile(file), QByteArray("old"));
}

TEST_F(PDeviceProfileFileTest, names_a_file_that_cannot_be_written) {
    ProfileDevice camera;
    const QString nowhere = path(u"no/such/a.json"_qs);
    const QString reason = PDeviceProfileFile::save(camera.device, nowhere).reason();
    EXPECT_TRUE(reason.startsWith(u"cannot save \"%1\": "_qs.arg(nowhere))) << reason.toStdString();
}

TEST_F(PDeviceProfileFileTest, is_read_with_every_value_and_its_line) {
    writeFile(file,
              profileText("\"gain\": {\n\"value\": 5},\n\"whiten\": {}", "\"mode\": \"2\",\n"));
    PDeviceProfile profile;
    ASSERT_TRUE(read(profile).isOk());
    EXPECT_EQ(profile.path, file);
    EXPECT_EQ(profile.model, u"Fake"_qs);
    EXPECT_EQ(profile.serial, u"1"_qs);
    EXPECT_EQ(profile.mode.form, QVariant(u"2"_qs));
    EXPECT_EQ(profile.mode.position, u"line 7"_qs);
    ASSERT_EQ(profile.settings.size(), 1);
    EXPECT_EQ(profile.settings.at(0).id, "gain");
    EXPECT_EQ(profile.settings.at(0).form, QVariant(5));
    EXPECT_EQ(profile.settings.at(0).position, u"line 10"_qs);
}

TEST_F(PDeviceProfileFileTest, of_a_device_without_modes_has_none) {
    ProfileDevice camera;
    camera.device.mode = {};
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    PDeviceProfile profile;
    ASSERT_TRUE(read(profile).isOk());
    EXPECT_FALSE(profile.mode.form.isValid());
}

struct DamageRow {
    const char* name;
    QByteArray text;
    const char* reason;
};

class DamagedProfile : public PDeviceProfileFileTest, public WithRow<DamageRow> {};

ROW_TEST(DamagedProfile, is_refused_with_file_and_line) {
    const QString reason = failureReason(GetParam().text);
    EXPECT_EQ(reason, u"\"%1\": %2"_qs.arg(file, QString::fromUtf8(GetParam().reason)));
}

QByteArray replaced(QByteArray text, const char* what, const QByteArray& by) {
    EXPECT_TRUE(text.contains(what)) << what;
    return text.replace(what, by);
}

const QByteArray sound = profileText("\"gain\": {\n\"value\": 5}", "\"mode\": \"0\",\n");

ROWS(PDeviceProfileFile, DamagedProfile,
     DamageRow{"an_empty_file", "", "line 1: not JSON: illegal value"},
     DamageRow{"a_text", "once upon a time", "line 1: not JSON: illegal value"},
     DamageRow{"a_picture", QByteArray("\x89PNG\r\n\x1a\n\0\0", 10),
               "line 1: not JSON: illegal value"},
     DamageRow{"a_list", "[1, 2]", "line 1: an array where an object was expected"},
     DamageRow{"an_empty_object", "{}",
               "not a camera profile: expected \"format\": \"camera profile\""},
     DamageRow{"foreign_json", "{\n\"cameras\": {}}",
               "not a camera profile: expected \"format\": \"camera profile\""},
     DamageRow{"another_format", replaced(sound, "camera profile", "scene"),
               "line 2: not a camera profile: expected \"format\": \"camera profile\""},
     DamageRow{"a_format_that_is_an_object", replaced(sound, "\"camera profile\"", "{}"),
               "line 2: not a camera profile: expected \"format\": \"camera profile\""},
     DamageRow{"a_later_version", replaced(sound, "n\": 1", "n\": 2"),
               "line 3: another version of the format: expected \"version\": 1"},
     DamageRow{"a_version_that_is_a_text", replaced(sound, "n\": 1", "n\": \"1\""),
               "line 3: another version of the format: expected \"version\": 1"},
     DamageRow{"no_version", replaced(sound, "\"version\": 1,", ""),
               "another version of the format: expected \"version\": 1"},
     DamageRow{"a_name_that_does_not_belong", replaced(sound, "n\": 1", "n\": 1,\n\"x\": 2"),
               "line 4: \"x\" does not belong here: expected format, version, camera"},
     DamageRow{"no_camera", "{\"format\": \"camera profile\", \"version\": 1}",
               "expected \"camera\": an object"},
     DamageRow{"a_camera_that_is_a_value",
               "{\"format\": \"camera profile\", \"version\": 1, \"camera\": 1}",
               "line 1: expected \"camera\": an object"},
     DamageRow{"a_name_too_many_in_the_camera",
               replaced(sound, "\"serial\"", "\"owner\": \"me\",\n\"serial\""),
               "line 6: \"owner\" does not belong here: expected model, serial, mode, properties"},
     DamageRow{"no_model", replaced(sound, "\"model\": \"Fake\",\n", ""),
               "line 4: expected \"model\": a string"},
     DamageRow{"a_model_that_is_a_number", replaced(sound, "\"Fake\"", "7"),
               "line 5: expected \"model\": a string"},
     DamageRow{"no_serial", replaced(sound, "\"serial\": \"1\",\n", ""),
               "line 4: expected \"serial\": a string"},
     DamageRow{"a_mode_that_is_a_number", replaced(sound, "e\": \"0\"", "e\": 0"),
               "line 7: expected \"mode\": a string"},
     DamageRow{"a_mode_that_is_an_object", replaced(sound, "e\": \"0\"", "e\": {}"),
               "line 7: expected \"mode\": a string"},
     DamageRow{"no_properties", replaced(sound, "\"properties\"", "\"Properties\""),
               "line 8: \"Properties\" does not belong here: expected model, serial, mode, "
               "properties"},
     DamageRow{"a_property_that_is_a_value", replaced(sound, "{\n\"value\": 5}", "5"),
               "line 9: expected \"gain\": an object"},
     DamageRow{"a_property_with_another_name_in_it", replaced(sound, "value", "valeu"),
               "line 10: \"valeu\" does not belong here: expected value"},
     DamageRow{"a_field_that_is_an_object", replaced(sound, ": 5}", ": {\"a\": {}}}"),
               "line 10: an object where a value was expected"},
     DamageRow{"a_value_that_is_null", replaced(sound, ": 5}", ": null}"),
               "line 10: null is not a value that can be read here"},
     DamageRow{"a_value_that_is_a_list", replaced(sound, ": 5}", ": [5]}"),
               "line 10: an array is not a value that can be read here"},
     DamageRow{"a_number_beyond_all_types", replaced(sound, ": 5}", ": 99999999999}"),
               "line 10: the number 99999999999 is out of range (an int of 32 bits or a finite "
               "double was expected)"},
     DamageRow{"a_name_twice", replaced(sound, ": 5}", ": 5,\n\"value\": 6}"),
               "line 11: the name \"value\" twice"},
     DamageRow{"a_property_twice", replaced(sound, ": 5}", ": 5},\n\"gain\": {}"),
               "line 11: the name \"gain\" twice"},
     DamageRow{"objects_nested_70_deep",
               replaced(sound, ": 5}",
                        ": " + QByteArray("{\"a\": ").repeated(70) + "1" +
                            QByteArray("}").repeated(70) + "}"),
               "line 10: objects nested more than 64 deep"},
     DamageRow{"two_documents", sound + sound,
               "line 14: not JSON: garbage at the end of the document"});

TEST_F(PDeviceProfileFileTest, is_refused_wherever_it_is_cut_off) {
    ProfileDevice camera;
    camera.changeAll();
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
    const QByteArray whole = readFile(file);
    PDeviceProfile profile;
    for (qsizetype size = 0; size < whole.trimmed().size(); ++size) {
        writeFile(file, whole.left(size));
        const PStatus status = read(profile);
        ASSERT_FALSE(status.isOk()) << size << " bytes";
        ASSERT_TRUE(status.reason().contains(u"\": line "_qs)) << size << " bytes";
    }
    EXPECT_TRUE(profile.path.isEmpty()) << "a failure must leave the profile alone";
}

TEST_F(PDeviceProfileFileTest, shows_hostile_names_shortened_and_without_control_characters) {
    const QString reason =
        failureReason(replaced(sound, "version", QByteArray("\\u001b[2J") + QByteArray(5000, 'x')));
    EXPECT_FALSE(reason.contains(QChar(0x1b)));
    EXPECT_LT(reason.size(), file.size() + 300);
}

TEST_F(PDeviceProfileFileTest, of_the_largest_size_is_read) {
    const qsizetype room = PDeviceProfileFile::largestSize - sound.size();
    EXPECT_EQ(failureReason(sound + QByteArray(room, ' ')), QString());
}

TEST_F(PDeviceProfileFileTest, that_is_larger_is_refused) {
    const qsizetype room = PDeviceProfileFile::largestSize - sound.size();
    EXPECT_EQ(failureReason(sound + QByteArray(room + 1, ' ')),
              u"cannot read \"%1\": it is larger than 1048576 bytes, too large "
              "for a profile"_qs.arg(file));
}

TEST_F(PDeviceProfileFileTest, that_is_not_there_is_named) {
    PDeviceProfile profile;
    EXPECT_TRUE(read(profile).reason().startsWith(u"cannot read \"%1\": "_qs.arg(file)));
}

TEST_F(PDeviceProfileFileTest, that_is_not_a_plain_file_is_refused_without_waiting_for_it) {
    ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    PDeviceProfile profile;
    EXPECT_EQ(read(profile).reason(), u"cannot read \"%1\": it is not a file"_qs.arg(file));
}

} // namespace
