// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileValues.h>

#include <PCd/profile/ProfileDevice.h>

#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <support/QtPrinters.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace {

class PDeviceProfileValuesTest : public testing::Test {
protected:
    /// Changes every value, then has the host read them.
    void changeAll() {
        camera.changeAll();
        for (PDeviceProperty* property : camera.device.supportProperties())
            property->updateValueFromDevice();
    }

    ProfileDevice camera;
};

QStringList settingIds(const PDeviceProfile& profile) {
    QStringList ids;
    for (const PDeviceProfile::Setting& setting : profile.settings)
        ids.append(QString::fromLatin1(setting.id));
    return ids;
}

} // namespace

TEST_F(PDeviceProfileValuesTest, are_kept_without_encoding_a_value) {
    changeAll();
    StreamedPair::timesWritten = 0;
    const PDeviceProfileValues settings = PDeviceProfileValues::ofDevice(camera.device);
    const PDeviceProfileValues copy = settings;
    EXPECT_FALSE(copy.isEmpty());
    EXPECT_EQ(StreamedPair::timesWritten, 0);
    EXPECT_FALSE(copy.toProfile().settings.isEmpty());
    EXPECT_EQ(StreamedPair::timesWritten, 1) << "this is where a value is encoded";
}

TEST_F(PDeviceProfileValuesTest, read_no_property_again) {
    camera.contrast->calls.clear();
    camera.contrast->inDevice = 99;
    PDeviceProfileValues::ofDevice(camera.device);
    EXPECT_EQ(camera.contrast->calls, QStringList());
}

TEST_F(PDeviceProfileValuesTest, that_are_renewed_have_the_mode_from_before) {
    PDeviceProfileValues kept = PDeviceProfileValues::ofDevice(camera.device);
    const PDeviceProfile before = kept.toProfile();
    changeAll();
    camera.device.mode = camera.device.modes.at(1);
    ASSERT_NE(before.mode.form, QVariant(u"1"_qs)) << "that is the mode set here";
    kept.renew(camera.device);
    PDeviceProfile expected = PDeviceProfileValues::ofDevice(camera.device).toProfile();
    EXPECT_EQ(kept.toProfile().mode.form, before.mode.form);
    EXPECT_EQ(kept.toProfile().model, expected.model);
    ASSERT_EQ(settingIds(kept.toProfile()), settingIds(expected));
    for (qsizetype i = 0; i < expected.settings.size(); ++i)
        EXPECT_EQ(kept.toProfile().settings.at(i).form, expected.settings.at(i).form);
}

TEST_F(PDeviceProfileValuesTest, that_are_not_finite_keep_no_other_from_being_set) {
    camera.hue->rangeInDevice = QVariant::fromValue(PMinMaxRange<double>{-180, 180, 1});
    camera.hue->inDevice = std::numeric_limits<double>::quiet_NaN();
    camera.contrast->inDevice = 12;
    for (PDeviceProperty* property : camera.device.supportProperties())
        property->updateValueFromDevice();
    const PDeviceProfileValues kept = PDeviceProfileValues::ofDevice(camera.device);
    camera.contrast->inDevice = 0;
    PDeviceProfilePlan plan(camera.device);
    const PStatus made = plan.make(kept.toProfile());
    EXPECT_TRUE(made.isOk()) << made.reason().toStdString();
    plan.apply();
    EXPECT_EQ(camera.contrast->inDevice, QVariant(12));
}

TEST_F(PDeviceProfileValuesTest, are_none_before_there_is_a_device) {
    EXPECT_TRUE(PDeviceProfileValues().isEmpty());
    EXPECT_TRUE(PDeviceProfileValues().toProfile().settings.isEmpty());
}

TEST_F(PDeviceProfileValuesTest, are_those_of_a_profile_that_is_saved_at_the_same_time) {
    changeAll();
    const PDeviceProfile kept = PDeviceProfileValues::ofDevice(camera.device).toProfile();
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"camera.json"_qs);
    ASSERT_TRUE(PDeviceProfileFile::save(camera.device, path).isOk());
    PDeviceProfile saved;
    ASSERT_TRUE(PDeviceProfileFile::read(path, saved).isOk());
    EXPECT_EQ(kept.model, saved.model);
    EXPECT_EQ(kept.serial, saved.serial);
    EXPECT_EQ(kept.mode.form, saved.mode.form);
    ASSERT_EQ(settingIds(kept), settingIds(saved));
    for (qsizetype i = 0; i < saved.settings.size(); ++i)
        EXPECT_EQ(kept.settings.at(i).form, saved.settings.at(i).form)
            << settingIds(saved).at(i).toStdString();
}

TEST_F(PDeviceProfileValuesTest, leave_out_a_region_that_the_device_could_not_read) {
    changeAll();
    camera.roi->setValueInner(QRect());
    EXPECT_FALSE(
        settingIds(PDeviceProfileValues::ofDevice(camera.device).toProfile()).contains(u"roi"_qs));
}

TEST_F(PDeviceProfileValuesTest, can_be_applied_to_another_device) {
    changeAll();
    ProfileDevice other;
    PDeviceProfilePlan plan(other.device);
    ASSERT_TRUE(plan.make(PDeviceProfileValues::ofDevice(camera.device).toProfile()).isOk());
    EXPECT_TRUE(plan.apply().isComplete());
    camera.exposure->inDevice = QVariant::fromValue(StreamedPair{7, 5}); // the saved part
    EXPECT_EQ(other.state(), camera.state());
}

TEST_F(PDeviceProfileValuesTest, that_a_device_cannot_have_are_named_without_a_file) {
    camera.contrast->setValueInner(1000);
    PDeviceProfilePlan plan(camera.device);
    const PStatus status = plan.make(PDeviceProfileValues::ofDevice(camera.device).toProfile());
    EXPECT_EQ(status.reason(), u"\"contrast\" cannot be 1000: expected a whole number "
                               "from -100 to 100"_qs);
}

TEST_F(PDeviceProfileValuesTest, that_are_renewed_keep_a_value_that_the_device_no_longer_reports) {
    changeAll();
    PDeviceProfileValues kept = PDeviceProfileValues::ofDevice(camera.device);
    const PDeviceProfile before = kept.toProfile();
    camera.hue->failsToRead = true;
    camera.hue->setValue(-30);
    camera.exposure->failsToRead = true;
    camera.exposure->updateValueFromDevice();
    ASSERT_TRUE(camera.hue->isUnread() && camera.exposure->isUnread());
    kept.renew(camera.device);
    const PDeviceProfile renewed = kept.toProfile();
    ASSERT_EQ(settingIds(renewed), settingIds(before));
    for (qsizetype i = 0; i < before.settings.size(); ++i)
        EXPECT_EQ(renewed.settings.at(i).form, before.settings.at(i).form);
}

TEST_F(PDeviceProfileValuesTest, that_are_held_stay_as_they_were) {
    PDeviceProfileValues kept = PDeviceProfileValues::ofDevice(camera.device);
    changeAll();
    kept.renew(camera.device, {"hue"});
    const PDeviceProfile profile = kept.toProfile();
    const auto form = [&profile](const char* id) {
        const qsizetype place = settingIds(profile).indexOf(QString::fromLatin1(id));
        return profile.settings.value(place).form;
    };
    EXPECT_EQ(form("hue"), QVariant(0));
    EXPECT_EQ(form("contrast"), QVariant(12));
    EXPECT_TRUE(kept.ids().contains("hue"));
}

TEST_F(PDeviceProfileValuesTest, have_no_mode_if_the_device_does_not_report_it) {
    camera.device.failsToReadMode = true;
    PDeviceProfileValues kept = PDeviceProfileValues::ofDevice(camera.device);
    EXPECT_FALSE(kept.toProfile().mode.form.isValid());
    EXPECT_FALSE(kept.renewMode(camera.device));
    camera.device.failsToReadMode = false;
    EXPECT_TRUE(kept.renewMode(camera.device));
    EXPECT_EQ(kept.toProfile().mode.form, QVariant(u"0"_qs));
}
