// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileDiff.h>

#include <PCd/profile/ProfileDevice.h>

#include <PCd/profile/PDeviceProfileFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

namespace {

class PDeviceProfileDiffTest : public FolderTest {
protected:
    ProfileDevice camera;

    PDeviceProfile read() const {
        PDeviceProfile profile;
        const PStatus status = PDeviceProfileFile::read(file, profile);
        EXPECT_TRUE(status.isOk()) << status.reason().toStdString();
        return profile;
    }
    PDeviceProfile saved() {
        EXPECT_TRUE(PDeviceProfileFile::save(camera.device, file).isOk());
        return read();
    }
    PDeviceProfile written(const QByteArray& text) const {
        writeFile(file, text);
        return read();
    }
    /// The differences as "id: file
    /// camera", with a dash where one side has no value.
    QStringList differences(const PDeviceProfile& profile) {
        const auto shown = [](const QString& text) { return text.isNull() ? u"-"_qs : text; };
        QStringList lines;
        for (const auto& difference : PDeviceProfileDiff::between(profile, camera.device)) {
            lines.append(u"%1: %2 | %3"_qs.arg(QString::fromUtf8(difference.id),
                                               shown(difference.inFile),
                                               shown(difference.onCamera)));
        }
        return lines;
    }

private:
    const QString file = path(u"a.json"_qs);
};

TEST_F(PDeviceProfileDiffTest, of_the_device_that_was_saved_is_empty) {
    EXPECT_EQ(differences(saved()), QStringList());
}

TEST_F(PDeviceProfileDiffTest, names_every_setting_that_has_changed) {
    const PDeviceProfile before = saved();
    camera.changeAll();
    EXPECT_EQ(differences(before),
              (QStringList{u"mode: 0 | 1"_qs, u"roi: 0,0,640,480 | 4,8,100,200"_qs,
                           u"contrast: 0 | 12"_qs, u"exposure: <StreamedPair> | <StreamedPair>"_qs,
                           u"hue: 0 | -30"_qs, u"rotate: 0° | 90°"_qs, u"negative: off | on"_qs}));
}

TEST_F(PDeviceProfileDiffTest, finds_what_changed_behind_the_hosts_back_and_sends_nothing) {
    const PDeviceProfile before = saved();
    camera.contrast->inDevice = 3;
    EXPECT_EQ(differences(before), QStringList{u"contrast: 0 | 3"_qs});
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfileDiffTest, ignores_what_a_composite_does_not_save) {
    const PDeviceProfile before = saved();
    camera.exposure->inDevice = QVariant::fromValue(StreamedPair{1, 99});
    EXPECT_EQ(differences(before), QStringList());
}

TEST_F(PDeviceProfileDiffTest, names_what_only_one_side_has) {
    const PDeviceProfile profile = written(
        profileText("\"fan\": {\"value\": 2},\n\"hidden\": {\"value\": 3}", "\"mode\": \"0\",\n"));
    EXPECT_EQ(differences(profile),
              (QStringList{u"fan: 2 | -"_qs, u"hidden: 3 | -"_qs, u"roi: - | 0,0,640,480"_qs,
                           u"contrast: - | 0"_qs, u"exposure: - | <StreamedPair>"_qs,
                           u"hue: - | 0"_qs, u"rotate: - | 0°"_qs, u"negative: - | off"_qs}));
}

TEST_F(PDeviceProfileDiffTest, shows_a_value_that_the_property_cannot_have) {
    const PDeviceProfile before = saved();
    PDeviceProfile edited = before;
    for (PDeviceProfile::Setting& setting : edited.settings) {
        if (setting.id == "rotate")
            setting.form = u"45"_qs;
    }
    EXPECT_EQ(differences(edited), QStringList{u"rotate: 45 | 0°"_qs});
}

TEST_F(PDeviceProfileDiffTest, does_not_compare_what_the_device_does_not_report_and_names_it) {
    const PDeviceProfile before = saved();
    camera.changeAll();
    camera.hidden->failsToRead = true; // not in profiles
    QList<PDeviceProfileDiff::Difference> differences;
    EXPECT_TRUE(PDeviceProfileDiff::find(before, camera.device, differences).isOk());
    EXPECT_EQ(differences.size(), 7);
    camera.hue->failsToRead = true;
    differences.clear();
    EXPECT_EQ(PDeviceProfileDiff::find(before, camera.device, differences).reason(),
              u"the camera did not report hue"_qs);
    EXPECT_EQ(differences.size(), 6);
    camera.hue->failsToRead = false;
    camera.device.failsToReadMode = true;
    differences.clear();
    EXPECT_EQ(PDeviceProfileDiff::find(before, camera.device, differences).reason(),
              u"the camera did not report its mode"_qs);
    EXPECT_EQ(differences.size(), 6);
}

} // namespace
