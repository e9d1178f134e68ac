// SPDX-License-Identifier: MIT
// Settings that a camera refuses although its driver reports that it took them: the window shows,
// saves and computes with the values that the camera has.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/property/PDeviceProperty.h>

#include <PGui/PNumberField.h>
#include <PGui/WidgetHands.h>

#include <support/QtPrinters.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QImageReader>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

namespace {

class RefusedSettingsTest : public ViewSession {
protected:
    static QJsonObject greyCamera() {
        QJsonObject grey = camera();
        grey.insert(u"flags"_qs, QJsonArray{u"MONO"_qs});
        grey.insert(u"bits"_qs, 8);
        return grey;
    }

    /// The control of the setting with this title.
    template <typename Control>
    Control* control(const QString& title) {
        for (Control* one : widget<QDockWidget>(u"settingsDock"_qs).findChildren<Control*>()) {
            if (one->accessibleName() == title)
                return one;
        }
        ADD_FAILURE() << "no control named " << title.toStdString();
        return nullptr;
    }

    void clickSwitch(const QString& title) {
        auto* const box = control<QCheckBox>(title);
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
        QCoreApplication::processEvents();
    }

    void enterNumber(const QString& title, const QString& text) {
        auto* const field = control<PNumberField>(title);
        ASSERT_NE(field, nullptr);
        enter(field, text);
        QCoreApplication::processEvents();
    }

    void choose(const QString& title, Qt::Key key) {
        auto* const box = control<QComboBox>(title);
        ASSERT_NE(box, nullptr);
        QTest::keyClick(box, key);
        QCoreApplication::processEvents();
    }

    QString message() { return window().statusBar()->currentMessage(); }

    PDeviceProperty& property(const char* id) { return *inFront().device()->getProperty(id); }

    /// The texts in the one picture that was saved.
    QStringList textsOfCapture() {
        const QDir folder(captureFolder());
        QImageReader reader(folder.filePath(folder.entryList(QDir::Files).value(0)));
        QStringList texts;
        for (const QString& name : reader.textKeys())
            texts.append(reader.text(name));
        return texts;
    }
};

} // namespace

TEST_F(RefusedSettingsTest, a_grey_camera_shows_and_saves_no_colour_that_it_did_not_take) {
    start({greyCamera()});
    ASSERT_TRUE(waitForNewFrames());
    clickSwitch(u"Chrome"_qs);
    enterNumber(u"Tint"_qs, u"1777"_qs);
    enterNumber(u"Temp"_qs, u"6000"_qs);
    EXPECT_FALSE(control<QCheckBox>(u"Chrome"_qs)->isChecked());
    EXPECT_EQ(shownText(control<PNumberField>(u"Tint"_qs)), u"0"_qs);
    EXPECT_EQ(shownText(control<PNumberField>(u"Temp"_qs)), u"0"_qs);
    EXPECT_EQ(property("chrome").valueInner(), QVariant(false));

    ASSERT_TRUE(waitForNewFrames());
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return !textsOfCapture().isEmpty(); }));
    const QString texts = textsOfCapture().join(u' ');
    // Four digits, because the milliseconds of the picture's time have three.
    EXPECT_FALSE(texts.contains(u"1777"_qs)) << texts.toStdString();
    EXPECT_FALSE(texts.contains(u"6000"_qs)) << texts.toStdString();
}

TEST_F(RefusedSettingsTest, the_window_says_once_what_the_camera_kept) {
    start({greyCamera()});
    ASSERT_TRUE(waitForNewFrames());
    const QSignalSpy messages(window().statusBar(), &QStatusBar::messageChanged);
    clickSwitch(u"Chrome"_qs);
    EXPECT_EQ(message(), u"Chrome: the camera kept “off”"_qs);
    enterNumber(u"Tint"_qs, u"777"_qs);
    EXPECT_EQ(message(), u"Tint: the camera kept “0”"_qs);
    fail("Toupcam_put_Option", 1);
    const QString before = control<QComboBox>(u"Binning"_qs)->currentText();
    choose(u"Binning"_qs, Qt::Key_Down);
    EXPECT_EQ(message(), u"Binning: the camera kept “%1”"_qs.arg(before));
    EXPECT_EQ(control<QComboBox>(u"Binning"_qs)->currentText(), before);
    EXPECT_EQ(messages.size(), 3);
}

TEST_F(RefusedSettingsTest, the_window_says_it_in_russian) {
    start({greyCamera()}, {u"--lang"_qs, u"ru"_qs});
    ASSERT_TRUE(waitForNewFrames());
    const QString title = property("chrome").title();
    clickSwitch(title);
    EXPECT_EQ(message(), title + u": камера оставила «выкл»"_qs);
}

TEST_F(RefusedSettingsTest, the_window_says_nothing_of_what_the_camera_took) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    clickSwitch(u"Horizontal flip"_qs);
    enterNumber(u"Contrast"_qs, u"20"_qs);
    choose(u"Binning"_qs, Qt::Key_Down);
    EXPECT_EQ(property("hflip").valueInner(), QVariant(true));
    EXPECT_EQ(property("contrast").valueInner(), QVariant(20));
    EXPECT_EQ(message(), QString());
}

TEST_F(RefusedSettingsTest, a_region_drawn_after_a_refused_flip_lands_where_it_was_drawn) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    fail("Toupcam_put_HFlip", 1);
    clickSwitch(u"Horizontal flip"_qs);
    EXPECT_FALSE(control<QCheckBox>(u"Horizontal flip"_qs)->isChecked());
    ASSERT_TRUE(waitForNewFrames());

    QTest::keyClick(&window(), Qt::Key_D, Qt::ControlModifier);
    PImageView* const view = &page().view();
    const auto inView = [&](QPoint p) { return view->geometryOfView().toView(p).toPoint(); };
    QTest::mousePress(view, Qt::LeftButton, {}, inView({40, 20}));
    QTest::mouseMove(view, inView({120, 80}));
    QTest::mouseRelease(view, Qt::LeftButton, {}, inView({120, 80}));
    ASSERT_TRUE(waitUntil([this] { return inFront().frame().image.width() < 100; }));
    EXPECT_NEAR(property("roi").valueInner().toRect().x(), 40, 4);
    EXPECT_NEAR(property("roi").valueInner().toRect().y(), 20, 4);
}
