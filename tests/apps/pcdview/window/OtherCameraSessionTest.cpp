// SPDX-License-Identifier: MIT
// The viewer with a camera of another plugin, whose properties it finds only by role.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/common/reading/ExifTool.h>

#include <apps/pcdview/camera/PPixelScale.h>
#include <apps/pcdview/camera/PRegionMap.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/PEnumeration.h>
#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <support/QtPrinters.h>

#include <QDir>
#include <QDoubleSpinBox>
#include <QImageReader>
#include <QLabel>
#include <QTest>

namespace {

class OtherCameraSessionTest : public ViewSession {
protected:
    void SetUp() override {
        start({}, {u"--plugin-path"_qs, QStringLiteral(LAB_PLUGIN)});
        ASSERT_TRUE(waitUntil([this] { return cameraTabs().currentPage() != nullptr; }));
        ASSERT_TRUE(waitForNewFrames());
    }

    PDeviceProperty& property(const char* id) { return *inFront().device()->getProperty(id); }
    QVariant value(const char* id) { return property(id).valueInner(); }
    void turn(const char* degrees) {
        const auto turns = property("turn").rangeInner().value<PEnumeration>();
        for (const PEnumerationItem& item : turns.items()) {
            if (item.name == QLatin1String(degrees))
                property("turn").setValue(QVariant::fromValue(item.id));
        }
    }
    bool shows(const char* label, const QString& text) {
        return waitUntil([&] { return widget<QLabel>(QString::fromLatin1(label)).text() == text; });
    }
    QSize sizeShown() {
        const PImage& image = inFront().frame().image;
        return {int(image.width()), int(image.height())};
    }
    /// Takes a still picture; returns the path of its file when it is complete.
    QString stillPicture() {
        QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier);
        const QDir folder(captureFolder());
        EXPECT_TRUE(
            waitUntil([&] { return folder.entryList(QDir::Files).value(0).endsWith(u".png"_qs); }));
        return folder.filePath(folder.entryList(QDir::Files).value(0));
    }
    /// Unplugs the camera and plugs it in again.
    void replug() {
        QObject* const deviceRegister = inFront().device()->parent();
        for (const bool plugged : {false, true})
            ASSERT_TRUE(
                QMetaObject::invokeMethod(deviceRegister, "setPlugged", Q_ARG(bool, plugged)));
        ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
    }
};

} // namespace

TEST_F(OtherCameraSessionTest, shows_its_exposure_and_temperature_in_the_status_bar) {
    EXPECT_TRUE(shows("exposure", u"5 ms, gain 1"_qs));
    EXPECT_TRUE(shows("temperature", u"21.5 °C"_qs));
    property("amplification").setValue(20.0); // decibels
    EXPECT_TRUE(shows("exposure", u"5 ms, gain 10"_qs));
    property("selftimed").setValue(true);
    EXPECT_TRUE(shows("exposure", u"5 ms, gain 10, auto"_qs));
}

TEST_F(OtherCameraSessionTest, sets_the_exposure_in_its_own_panel) {
    auto& field = widget<QDoubleSpinBox>(u"shutter"_qs);
    EXPECT_EQ(field.value(), 0.005);
    field.selectAll();
    QTest::keyClicks(&field, u"0.02"_qs);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_TRUE(shows("exposure", u"20 ms, gain 1"_qs));
}

TEST_F(OtherCameraSessionTest, counts_a_long_exposure_down) {
    EXPECT_FALSE(inFront().untilNextPicture());
    property("shutter").setValue(30.0); // seconds
    EXPECT_TRUE(inFront().untilNextPicture());
}

TEST_F(OtherCameraSessionTest, saves_with_a_picture_how_it_was_taken) {
    property("shutter").setValue(0.02);
    property("amplification").setValue(20.0);
    turn("90");
    ASSERT_TRUE(waitUntil([this] { return sizeShown() == QSize(120, 160); }));
    const QString file = stillPicture();
    const QJsonObject tags = exifToolTags(file);
    EXPECT_NEAR(tags.value(u"ExifIFD:ExposureTime"_qs).toDouble(), 0.02, 1e-6);
    QImageReader reader(file);
    EXPECT_EQ(reader.text(u"Exposure"_qs), u"20 ms (manual)"_qs);
    EXPECT_EQ(reader.text(u"Gain"_qs), u"1000 %"_qs);
    EXPECT_EQ(reader.text(u"Rotation"_qs), u"90°"_qs);
    EXPECT_EQ(reader.text(u"Region"_qs), u"0,0,160,120 px"_qs);
    EXPECT_EQ(tags.value(u"PNG:SettingFilter"_qs).toVariant().toInt(), 3); // it has no role
    EXPECT_EQ(reader.textKeys().filter(u"shutter"_qs), QStringList());
}

TEST_F(OtherCameraSessionTest, draws_a_region_in_the_turned_picture) {
    turn("90");
    ASSERT_TRUE(waitUntil([this] { return sizeShown() == QSize(120, 160); }));
    page().useRegion({20, 40, 60, 80});
    EXPECT_EQ(value("window").toRect(), QRect(40, 40, 80, 60));
    EXPECT_TRUE(waitUntil([this] { return sizeShown() == QSize(60, 80); }));
    EXPECT_EQ(PPixelScale::of(*inFront().device(), sizeShown()), 1);
}

TEST_F(OtherCameraSessionTest, gives_it_its_settings_back_when_it_is_plugged_in_again) {
    property("shutter").setValue(0.02);
    property("amplification").setValue(12.0);
    property("window").setValue(QRect(20, 40, 80, 60));
    ASSERT_TRUE(waitUntil([this] { return sizeShown() == QSize(80, 60); }));
    ASSERT_NO_FATAL_FAILURE(replug());
    EXPECT_EQ(inFront().notes(), QStringList());
    EXPECT_EQ(value("shutter"), 0.02);
    EXPECT_EQ(value("amplification"), 12.0);
    EXPECT_EQ(value("window").toRect(), QRect(20, 40, 80, 60));
    EXPECT_TRUE(shows("exposure", u"20 ms, gain 3.981"_qs));
}

TEST_F(OtherCameraSessionTest, lets_a_camera_go_that_its_plugin_deletes) {
    delete inFront().device();
    EXPECT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    EXPECT_EQ(inFront().device(), nullptr);
}
