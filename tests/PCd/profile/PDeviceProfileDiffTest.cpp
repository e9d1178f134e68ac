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
    /// "id: file | camera", a dash for none.
    QStringList differences(const PDeviceProfile& profile) {
        const auto shown = [](const QString& text) {
            return text.isNull() ? QStringLiteral("-") : text;
        };
        QStringList lines;
        for (const auto& difference : PDeviceProfileDiff::between(profile, camera.device)) {
            lines.append(QStringLiteral("%1: %2 | %3")
                             .arg(QString::fromUtf8(difference.id), shown(difference.inFile),
                                  shown(difference.onCamera)));
        }
        return lines;
    }

private:
    const QString file = path(QStringLiteral("a.json"));
};

TEST_F(PDeviceProfileDiffTest, of_the_device_that_was_saved_is_empty) {
    EXPECT_EQ(differences(saved()), QStringList());
}

TEST_F(PDeviceProfileDiffTest, names_every_setting_that_has_changed) {
    const PDeviceProfile before = saved();
    camera.changeAll();
    EXPECT_EQ(differences(before),
              (QStringList{QStringLiteral("mode: 0 | 1"),
                           QStringLiteral("roi: 0,0,640,480 | 4,8,100,200"),
                           QStringLiteral("contrast: 0 | 12"),
                           QStringLiteral("exposure: <StreamedPair> | <StreamedPair>"),
                           QStringLiteral("hue: 0 | -30"), QStringLiteral("rotate: 0° | 90°"),
                           QStringLiteral("negative: off | on")}));
}

TEST_F(PDeviceProfileDiffTest, sees_what_changed_behind_the_hosts_back_and_sends_nothing) {
    const PDeviceProfile before = saved();
    camera.contrast->inDevice = 3;
    EXPECT_EQ(differences(before), QStringList{QStringLiteral("contrast: 0 | 3")});
    EXPECT_EQ(camera.sent, QStringList());
}

TEST_F(PDeviceProfileDiffTest, does_not_look_at_what_a_composite_does_not_save) {
    const PDeviceProfile before = saved();
    camera.exposure->inDevice = QVariant::fromValue(StreamedPair{1, 99});
    EXPECT_EQ(differences(before), QStringList());
}

TEST_F(PDeviceProfileDiffTest, names_what_only_one_side_has) {
    const PDeviceProfile profile = written(
        profileText("\"fan\": {\"value\": 2},\n\"hidden\": {\"value\": 3}", "\"mode\": \"0\",\n"));
    EXPECT_EQ(
        differences(profile),
        (QStringList{QStringLiteral("fan: 2 | -"), QStringLiteral("hidden: 3 | -"),
                     QStringLiteral("roi: - | 0,0,640,480"), QStringLiteral("contrast: - | 0"),
                     QStringLiteral("exposure: - | <StreamedPair>"), QStringLiteral("hue: - | 0"),
                     QStringLiteral("rotate: - | 0°"), QStringLiteral("negative: - | off")}));
}

TEST_F(PDeviceProfileDiffTest, shows_a_value_that_the_property_cannot_have) {
    const PDeviceProfile before = saved();
    PDeviceProfile edited = before;
    for (PDeviceProfile::Setting& setting : edited.settings) {
        if (setting.id == "rotate")
            setting.form = QStringLiteral("45");
    }
    EXPECT_EQ(differences(edited), QStringList{QStringLiteral("rotate: 45 | 0°")});
}

} // namespace
