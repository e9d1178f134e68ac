// SPDX-License-Identifier: MIT
// Reading the camera while its exposure panel is open. A panel writes to the camera when a value is
// emitted.
#include <PTDevice/panels/ExposurePanelFixture.h>

#include <PCd/profile/PDeviceProfileDiff.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PQuietReading.h>

#include <support/QtPrinters.h>

#include <QFile>
#include <QTemporaryDir>

namespace {

class PTExtendedExposureRead : public ExposurePanelFixture {
protected:
    /// With a video exposure of 20 ms, switched to the page of triggered capture (5 s) by a click.
    /// Then the gain of the camera changes behind the host's back.
    void openOnTrigger() {
        ExtendedExposureData video;
        video.autoexpenabled = false;
        video.exp = 20;
        openWith(video);
        clickOn(button("pbTrigger"));
        ASSERT_EQ(stored().capturemode, ExtendedExposureData::Trigger);
        ASSERT_TRUE(property("autoexpogain")->trySetValue(200));
        SimJournal::clear();
    }
    void save() const {
        const PStatus status = PDeviceProfileFile::save(*device, file);
        ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
    }
    PDeviceProfile read() const {
        PDeviceProfile profile;
        const PStatus status = PDeviceProfileFile::read(file, profile);
        EXPECT_TRUE(status.isOk()) << status.reason().toStdString();
        return profile;
    }

    QTemporaryDir folder;
    const QString file = folder.filePath(u"a.json"_qs);
};

TEST_F(PTExtendedExposureRead, saving_a_profile_sends_nothing_and_keeps_the_video_exposure) {
    openOnTrigger();
    save();
    EXPECT_EQ(puts(), std::vector<std::string>());
    EXPECT_EQ(stored().exp, 20);
    EXPECT_EQ(time()->value(), 20);
    QFile saved(file);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_TRUE(saved.readAll().contains("\"exp\": 20.0,"));
    clickOn(button("pbVideo"));
    const std::vector<std::string> times = SimJournal::calls("Toupcam_put_ExpoTime");
    ASSERT_FALSE(times.empty());
    EXPECT_EQ(times.back(), "Toupcam_put_ExpoTime(h1, 20000) = 0");
}

TEST_F(PTExtendedExposureRead, comparing_sends_nothing_and_finds_no_difference) {
    openOnTrigger();
    save();
    EXPECT_EQ(PDeviceProfileDiff::between(read(), *device).size(), 0);
    EXPECT_EQ(puts(), std::vector<std::string>());
}

TEST_F(PTExtendedExposureRead, checking_a_profile_sends_nothing) {
    openOnTrigger();
    save();
    PDeviceProfilePlan plan(*device);
    EXPECT_TRUE(plan.make(read()).isOk());
    EXPECT_EQ(puts(), std::vector<std::string>());
}

TEST_F(PTExtendedExposureRead, listing_sends_nothing_and_shows_what_the_camera_has) {
    openOnTrigger();
    {
        const PQuietReading reading(device->supportProperties());
        EXPECT_EQ(stored().gain, 200);
        EXPECT_EQ(stored().exp, 20);
    }
    EXPECT_EQ(puts(), std::vector<std::string>());
}

TEST_F(PTExtendedExposureRead, the_panel_still_follows_the_next_update) {
    openOnTrigger();
    save();
    EXPECT_NE(gain()->value(), 200);
    exposure()->updateValueFromDevice();
    EXPECT_EQ(gain()->value(), 200);
    EXPECT_EQ(time()->value(), 20);
}

TEST_F(PTExtendedExposureRead, a_profile_saved_while_triggered_brings_the_video_exposure_back) {
    openOnTrigger();
    save();
    clickOn(button("pbVideo"));
    enterNumber(time(), u"30"_qs);
    ASSERT_EQ(stored().exp, 30);
    PDeviceProfilePlan plan(*device);
    ASSERT_TRUE(plan.make(read()).isOk());
    EXPECT_TRUE(plan.apply().isComplete());
    EXPECT_EQ(stored().exp, 20);
    EXPECT_EQ(time()->value(), 20);
}

} // namespace
