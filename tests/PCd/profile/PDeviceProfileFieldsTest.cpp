// SPDX-License-Identifier: MIT
// Composite values in profiles, field by field.
#include <PCd/profile/PDeviceProfileDiff.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <PCd/profile/ProfileDevice.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

namespace {

/// A composite value of a plugin; its field `mode` is not saved.
struct Shot {
    Q_GADGET
    Q_PROPERTY(quint16 gain MEMBER gain)
    Q_PROPERTY(double exposure MEMBER exposure)
    Q_PROPERTY(bool automatic MEMBER automatic)
    Q_PROPERTY(quint32 serial MEMBER serial)
    Q_PROPERTY(qint32 mode MEMBER mode STORED false)
    Q_CLASSINFO("Ranges", "exposure=0..100")

public:
    quint16 gain = 100;
    double exposure = 20;
    bool automatic = false;
    quint32 serial = 4'000'000'000;
    qint32 mode = 1;

    friend bool operator==(const Shot& a, const Shot& b) {
        return a.gain == b.gain && a.exposure == b.exposure && a.automatic == b.automatic &&
               a.serial == b.serial && a.mode == b.mode;
    }
    friend QDataStream& operator<<(QDataStream& out, const Shot& shot) {
        return out << shot.gain << shot.exposure << shot.automatic << shot.serial;
    }
    friend QDataStream& operator>>(QDataStream& in, Shot& shot) {
        return in >> shot.gain >> shot.exposure >> shot.automatic >> shot.serial;
    }
};

/// A shot in the format of older profiles: gain 150, exposure 7.5, automatic, serial 5.
const QByteArray oldShot =
    "{\"$bytes\": \"" + QByteArray::fromHex("0096401e0000000000000100000005").toBase64() + "\"}";

class PDeviceProfileFieldsTest : public FolderTest {
protected:
    PDeviceProfileFieldsTest() {
        device.makeProperties = [this] { return QList<PDeviceProperty*>{shot, contrast}; };
        shot->setType(PCD::DevicePropertyType::Custom);
        device.supportProperties();
    }
    PDeviceProfile read() const {
        PDeviceProfile profile;
        const PStatus status = PDeviceProfileFile::read(file, profile);
        EXPECT_TRUE(status.isOk()) << status.reason().toStdString();
        return profile;
    }
    PStatus load() {
        PDeviceProfilePlan plan(device);
        const PStatus status = plan.make(read());
        report = plan.apply();
        return status;
    }
    /// Loads a file that begins like a saved one, in which "gain" would be in line 11.
    PStatus loadShot(const QByteArray& value) {
        writeFile(file, profileText("\"shot\": {\n\"value\": " + value + "\n}"));
        return load();
    }
    QStringList differences() {
        QStringList lines;
        for (const auto& difference : PDeviceProfileDiff::between(read(), device)) {
            lines.append(u"%1: %2 | %3"_qs.arg(QString::fromUtf8(difference.id), difference.inFile,
                                               difference.onCamera));
        }
        return lines;
    }
    Shot inDevice() const { return shot->inDevice.value<Shot>(); }

    const QString file = path(u"a.json"_qs);
    FakeDevice device; // owns the properties
    FakeProperty* shot = new FakeProperty("shot", QVariant::fromValue(Shot()));
    FakeProperty* contrast = new FakeProperty("contrast", 12);
    PDeviceProfileReport report;
};

TEST_F(PDeviceProfileFieldsTest, are_saved_by_name_in_the_order_of_their_declaration) {
    ASSERT_TRUE(PDeviceProfileFile::save(device, file).isOk());
    EXPECT_TRUE(readFile(file).contains(R"(
            "shot": {
                "value": {
                    "gain": 100,
                    "exposure": 20.0,
                    "automatic": false,
                    "serial": {"$int64": "4000000000"}
                }
            },
)")) << readFile(file).toStdString();
}

TEST_F(PDeviceProfileFieldsTest, come_back_and_leave_alone_what_is_not_saved) {
    ASSERT_TRUE(PDeviceProfileFile::save(device, file).isOk());
    shot->inDevice = QVariant::fromValue(Shot{7, 8, true, 9, 0});
    ASSERT_TRUE(load().isOk());
    EXPECT_EQ(inDevice(), (Shot{100, 20, false, 4'000'000'000, 0}));
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(report.missing, QList<QByteArray>());
    EXPECT_EQ(report.ignored.size(), 0);
}

TEST_F(PDeviceProfileFieldsTest, that_are_not_in_the_file_stay_and_are_reported) {
    ASSERT_TRUE(loadShot("{\"gain\": 150, \"exposure\": 30}").isOk());
    EXPECT_EQ(inDevice(), (Shot{150, 30, false, 4'000'000'000, 1}));
    EXPECT_EQ(report.missing, QList<QByteArray>({"shot.automatic", "shot.serial", "contrast"}));
}

TEST_F(PDeviceProfileFieldsTest, that_are_not_saved_are_ignored) {
    ASSERT_TRUE(loadShot("{\"gain\": 150, \"mode\": 0}").isOk());
    EXPECT_EQ(inDevice().gain, 150);
    EXPECT_EQ(inDevice().mode, 1);
    ASSERT_EQ(report.ignored.size(), 1);
    EXPECT_EQ(report.ignored.at(0).id, "shot.mode");
    EXPECT_EQ(report.ignored.at(0).reason, u"profiles do not hold this property"_qs);
}

TEST_F(PDeviceProfileFieldsTest, are_read_from_the_bytes_of_older_files) {
    ASSERT_TRUE(loadShot(oldShot).isOk());
    EXPECT_EQ(inDevice(), (Shot{150, 7.5, true, 5, 1}));
}

TEST_F(PDeviceProfileFieldsTest, differ_one_by_one) {
    ASSERT_TRUE(PDeviceProfileFile::save(device, file).isOk());
    EXPECT_EQ(differences(), QStringList());
    shot->inDevice = QVariant::fromValue(Shot{100, 30, true, 4'000'000'000, 0});
    EXPECT_EQ(differences(),
              (QStringList{u"shot.exposure: 20 | 30"_qs, u"shot.automatic: off | on"_qs}));
}

TEST_F(PDeviceProfileFieldsTest, of_older_files_differ_one_by_one_too) {
    writeFile(file,
              profileText("\"contrast\": {\"value\": 12},\n\"shot\": {\"value\": " + oldShot + "}",
                          "\"mode\": \"0\",\n"));
    shot->inDevice = QVariant::fromValue(Shot{150, 7.5, true, 6, 0});
    EXPECT_EQ(differences(), QStringList{u"shot.serial: 5 | 6"_qs});
}

TEST_F(PDeviceProfileFieldsTest, differ_where_one_side_has_none_or_cannot_have_it) {
    writeFile(file, profileText("\"contrast\": {\"value\": 12},\n\"shot\": {\"value\": {\"gain\": "
                                "\"much\", \"exposure\": 20, \"automatic\": false, \"colour\": "
                                "3}},\n\"lamp\": {\"value\": {\"power\": 3}}",
                                "\"mode\": \"0\",\n"));
    EXPECT_EQ(differences(),
              (QStringList{u"shot.gain: much | 100"_qs, u"shot.serial:  | 4000000000"_qs,
                           u"shot.colour: 3 | "_qs, u"lamp: power=3 | "_qs}));
}

TEST_F(PDeviceProfileFieldsTest, outside_its_range_refuses_the_value_and_the_rest_is_set) {
    writeFile(file, profileText("\"shot\": {\"value\": {\"gain\": 150, \"exposure\": 500}},\n"
                                "\"contrast\": {\"value\": 3}"));
    ASSERT_TRUE(load().isOk());
    ASSERT_EQ(report.refused.size(), 1);
    EXPECT_EQ(report.refused.at(0).id, "shot.exposure");
    EXPECT_EQ(report.refused.at(0).reason, u"cannot be 500: expected a number from 0 to 100"_qs);
    EXPECT_FALSE(shot->calls.contains(u"set"_qs));
    EXPECT_EQ(contrast->inDevice, QVariant(3));
}

TEST_F(PDeviceProfileFieldsTest, outside_its_range_is_set_if_the_camera_has_it) {
    shot->inDevice = QVariant::fromValue(Shot{7, 500, true, 9, 0});
    ASSERT_TRUE(PDeviceProfileFile::save(device, file).isOk());
    shot->inDevice = QVariant::fromValue(Shot{8, 500, true, 9, 0});
    ASSERT_TRUE(load().isOk());
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(inDevice(), (Shot{7, 500, true, 9, 0}));
}

struct WrongRow {
    const char* name;
    const char* value;
    const char* message;
};

class WrongField : public PDeviceProfileFieldsTest, public WithRow<WrongRow> {};

ROW_TEST(WrongField, is_named_with_file_and_line_and_nothing_is_sent) {
    const PStatus status = loadShot(GetParam().value);
    EXPECT_EQ(status.reason(), u"\"%1\": %2"_qs.arg(file, QString::fromUtf8(GetParam().message)));
    EXPECT_FALSE(shot->calls.contains(u"set"_qs));
}

ROWS(PCd, WrongField,
     WrongRow{"a_text", "{\n\"gain\": \"much\"}",
              "line 10: \"shot.gain\" cannot be the text \"much\": expected an unsigned whole "
              "number of 16 bits"},
     WrongRow{
         "too_large", "{\n\"exposure\": 1.5,\n\"gain\": 70000}",
         "line 11: \"shot.gain\" cannot be 70000: expected an unsigned whole number of 16 bits"},
     WrongRow{"a_fraction", "{\n\"gain\": 1.5}",
              "line 10: \"shot.gain\" cannot be 1.5 with a decimal point: expected an unsigned "
              "whole number of 16 bits"},
     WrongRow{"a_number_for_a_switch", "{\n\"automatic\": 1}",
              "line 10: \"shot.automatic\" cannot be 1: expected on or off"},
     WrongRow{"an_unknown_field", "{\n\"gian\": 5}",
              "line 10: \"shot.gian\" cannot be 5: expected one of the fields gain, exposure, "
              "automatic, serial"},
     WrongRow{"a_value_without_fields", "7",
              "line 9: \"shot\" cannot be 7: expected the fields gain, exposure, automatic, "
              "serial"},
     WrongRow{"bytes_that_are_too_few", "{\"$bytes\": \"AAAABw==\"}",
              "line 9: \"shot\" cannot be these bytes: expected the fields gain, exposure, "
              "automatic, serial"});

TEST_F(PDeviceProfileFieldsTest, of_a_plain_value_are_refused) {
    writeFile(file, profileText("\"contrast\": {\n\"value\": {\"a\": 1}}"));
    EXPECT_TRUE(load().reason().startsWith(
        u"\"%1\": line 9: \"contrast\" cannot be these fields: expected "_qs.arg(file)));
}

} // namespace

#include "PDeviceProfileFieldsTest.moc"
