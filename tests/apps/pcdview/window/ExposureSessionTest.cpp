// SPDX-License-Identifier: MIT
// Automatic exposure in the viewer as the user operates it, with a simulated camera.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>

#include <PGui/PDoubleRangeWidget.h>
#include <PGui/PRangeWidget.h>

#include <support/QtPrinters.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QTest>

namespace {

constexpr double hundredths = 0.0051; // the panel rounds, in milliseconds

class ExposureSessionTest : public ViewSession {
protected:
    void SetUp() override {
        QJsonObject dark = camera();
        dark.insert(u"flags"_qs, QJsonArray{u"TRIGGER_SOFTWARE"_qs});
        dark.insert(u"exposure"_qs, QJsonObject{{u"default"_qs, 1000}, {u"auto"_qs, false}});
        start({dark, camera(u"cam-2"_qs, u"S0002"_qs)});
        ASSERT_TRUE(waitForNewFrames());
    }

    PDeviceProperty& property(const char* id) { return *inFront().device()->getProperty(id); }
    /// The value that the camera has now.
    QVariant readFromCamera(const char* id) {
        property(id).updateValueFromDevice();
        return property(id).valueInner();
    }
    double shownTime() { return widget<PDoubleRangeWidget>(u"exposureTime"_qs).value(); }
    bool isShownAutomatic() { return widget<QCheckBox>(u"cbAutoExposure"_qs).isChecked(); }
    bool panelShows(double milliseconds) {
        return waitUntil([&] { return std::abs(shownTime() - milliseconds) < hundredths; });
    }
    void click(const char* button) {
        auto& box = widget<QAbstractButton>(QString::fromLatin1(button));
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
    }
    /// The box of the plain switch, found by its label.
    QCheckBox& plainSwitch() {
        for (QCheckBox* box : window().findChildren<QCheckBox*>()) {
            if (box->accessibleName() == u"Autoexposure"_qs)
                return *box;
        }
        ADD_FAILURE() << "no switch for automatic exposure";
        return widget<QCheckBox>(u"cbAutoExposure"_qs);
    }
    /// Switches automatic exposure on by the panel, and waits until the program has read the time
    /// that it chooses for a dark picture. The panel still shows the earlier time.
    void findExposure() {
        click("cbAutoExposure");
        ASSERT_TRUE(
            waitUntil([this] { return property("autoexpottime").valueInner().toInt() > 2'000; }));
        ASSERT_EQ(shownTime(), 1);
    }
};

} // namespace

TEST_F(ExposureSessionTest, unticking_automatic_exposure_keeps_what_it_had_found) {
    ASSERT_NO_FATAL_FAILURE(findExposure());
    const QVariant time = property("autoexpottime").valueInner();
    const QVariant gain = property("autoexpogain").valueInner();
    click("cbAutoExposure");
    EXPECT_EQ(readFromCamera("autoexponeable"), false);
    EXPECT_EQ(readFromCamera("autoexpottime"), time);
    EXPECT_EQ(readFromCamera("autoexpogain"), gain);
    EXPECT_FALSE(isShownAutomatic());
    EXPECT_NEAR(shownTime(), time.toDouble() / 1000, hundredths);
    EXPECT_EQ(widget<PRangeWidget>(u"exposureGain"_qs).value(), gain.toInt());
}

TEST_F(ExposureSessionTest, the_plain_switch_keeps_what_was_found_and_the_panel_follows) {
    ASSERT_NO_FATAL_FAILURE(findExposure());
    QCheckBox& box = plainSwitch();
    ASSERT_TRUE(waitUntil([&] { return box.isChecked(); }));
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
    ASSERT_TRUE(waitUntil([this] { return readFromCamera("autoexponeable") == false; }));
    const QVariant time = readFromCamera("autoexpottime");
    EXPECT_TRUE(waitUntil([this] { return !isShownAutomatic(); }));
    EXPECT_TRUE(panelShows(time.toDouble() / 1000)) << shownTime();
    EXPECT_EQ(readFromCamera("autoexpottime"), time);
    EXPECT_EQ(readFromCamera("autoexponeable"), false);
}

TEST_F(ExposureSessionTest, the_panel_shows_what_automatic_exposure_has_settled_at) {
    ASSERT_NO_FATAL_FAILURE(findExposure());
    EXPECT_TRUE(waitUntil([this] { return shownTime() > 2; }));
    EXPECT_TRUE(isShownAutomatic());
    EXPECT_EQ(readFromCamera("autoexponeable"), true);
}

TEST_F(ExposureSessionTest, a_time_that_is_set_outside_the_panel_is_kept_by_its_next_edit) {
    property("autoexpottime").setValue(7'003);
    EXPECT_TRUE(panelShows(7.003)) << shownTime();
    EXPECT_EQ(readFromCamera("autoexpottime"), 7'003);
    widget<PRangeWidget>(u"exposureGain"_qs).setValue(200);
    EXPECT_EQ(readFromCamera("autoexpogain"), 200);
    EXPECT_NEAR(readFromCamera("autoexpottime").toInt(), 7'003, 5);
}

TEST_F(ExposureSessionTest, a_time_beyond_the_range_of_the_panel_stays) {
    property("autoexpottime").setValue(7'000'000);
    ASSERT_TRUE(panelShows(5000)) << shownTime();
    EXPECT_EQ(readFromCamera("autoexpottime"), 7'000'000);
    EXPECT_EQ(PCompositeFields::read(property("extexposure").valueInner(), u"exp"_qs).toDouble(),
              7000);
}

TEST_F(ExposureSessionTest, the_video_exposure_is_kept_where_a_tab_is_left_on_trigger) {
    widget<PDoubleRangeWidget>(u"exposureTime"_qs).setValue(20);
    ASSERT_EQ(readFromCamera("autoexpottime"), 20'000);
    click("pbTrigger");
    ASSERT_EQ(readFromCamera("autoexpottime"), 5'000'000);
    PViewCamera& triggered = inFront();
    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    ASSERT_NE(&inFront(), &triggered);
    ASSERT_TRUE(cameraTabs().open(u"Small-S0001"_qs).isOk());
    ASSERT_EQ(&inFront(), &triggered);
    EXPECT_TRUE(widget<QAbstractButton>(u"pbTrigger"_qs).isChecked());
    EXPECT_EQ(readFromCamera("autoexpottime"), 5'000'000);
    click("pbVideo");
    const QStringList times = puts().filter(u"Toupcam_put_ExpoTime("_qs);
    ASSERT_FALSE(times.isEmpty());
    EXPECT_TRUE(times.last().endsWith(u", 20000) = 0"_qs)) << times.last().toStdString();
    EXPECT_EQ(readFromCamera("autoexpottime"), 20'000);
}

TEST_F(ExposureSessionTest, a_profile_sets_the_time_that_it_holds) {
    const QString file = path(u"one-millisecond.json"_qs);
    ASSERT_TRUE(PDeviceProfileFile::save(*inFront().device(), file).isOk());
    ASSERT_NO_FATAL_FAILURE(findExposure());
    PDeviceProfile profile;
    ASSERT_TRUE(PDeviceProfileFile::read(file, profile).isOk());
    PDeviceProfilePlan plan(*inFront().device());
    ASSERT_TRUE(plan.make(profile).isOk());
    inFront().apply(plan);
    EXPECT_EQ(readFromCamera("autoexponeable"), false);
    EXPECT_EQ(readFromCamera("autoexpottime"), 1'000);
    // The watch follows it again.
    property("autoexpottime").setValue(7'000);
    EXPECT_TRUE(panelShows(7)) << shownTime();
}
