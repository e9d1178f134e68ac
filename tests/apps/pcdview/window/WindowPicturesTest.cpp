// SPDX-License-Identifier: MIT
// The window in the situations that the documentation shows. With PCD_SCREENSHOTS=<folder> pictures
// are saved there as view-<name>.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/property/PDeviceProperty.h>

#include <PGui/PDoubleRangeWidget.h>

#include <support/QtPrinters.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTest>
#include <QTreeWidget>

namespace {

class WindowPicturesTest : public ViewSession {
protected:
    static bool areSaved() { return !qEnvironmentVariableIsEmpty("PCD_SCREENSHOTS"); }

    /// A realistic camera, or a smaller and quicker one if the pictures are not for viewing.
    static QJsonObject colourCamera() {
        const int share = areSaved() ? 1 : 3;
        QJsonObject camera = ViewSession::camera(u"cam-1"_qs, u"SIM02C0001"_qs);
        camera.insert(u"model"_qs, u"Simulated-2MC"_qs);
        camera.insert(u"resolutions"_qs, QJsonArray{QJsonObject{{u"width"_qs, 1824 / share},
                                                                {u"height"_qs, 1216 / share},
                                                                {u"fps"_qs, 15}}});
        camera.insert(u"exposure"_qs, QJsonObject{{u"default"_qs, 9500}, {u"auto"_qs, false}});
        camera.insert(u"flags"_qs,
                      QJsonArray{u"USB30"_qs, u"TEC_ONOFF"_qs, u"FAN"_qs, u"TRIGGER_SOFTWARE"_qs});
        camera.insert(u"source"_qs,
                      QJsonObject{{u"kind"_qs, u"specimen"_qs}, {u"specimen"_qs, u"tissue"_qs}});
        return camera;
    }

    void startLive(const QJsonArray& cameras, const QString& theme = u"light"_qs,
                   const QString& language = u"en"_qs) {
        start(cameras, {u"--theme"_qs, theme, u"--lang"_qs, language});
        window().resize(PMainWindow::usualSize());
        ASSERT_TRUE(waitForNewFrames());
        ASSERT_TRUE(waitUntil([this] {
            const double pace = inFront().framesPerSecond();
            return widget<QLabel>(u"mean"_qs).text().contains(u"G "_qs) && pace > 1;
        }));
    }

    /// Waits until the rate shown is the camera's.
    void settle() {
        ASSERT_TRUE(waitUntil([this] { return inFront().frame().stamp->sequence > 40; }));
        ASSERT_TRUE(waitUntil([this] {
            return std::abs(inFront().framesPerSecond() - 15) < 1 &&
                   widget<QLabel>(u"pace"_qs).text().startsWith(u"1"_qs);
        }));
    }

    /// The share of the pixels of a widget that have exactly this colour.
    static double colourShare(const QColor& colour, QWidget& widget) {
        const QImage shown = widget.grab().toImage();
        qint64 count = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x)
                count += shown.pixel(x, y) == colour.rgb() ? 1 : 0;
        }
        return double(count) / shown.width() / shown.height();
    }

    double redShare() { return colourShare(Qt::red, page().view()); }

    static void save(QWidget& shown, const QString& file) {
        const QString folder = qEnvironmentVariable("PCD_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        ASSERT_TRUE(shown.grab().save(QDir(folder).filePath(u"view-"_qs + file), nullptr, 88));
    }

    QDockWidget& dock(const char* name) {
        auto& dock = widget<QDockWidget>(QString::fromLatin1(name));
        dock.show();
        dock.raise();
        QCoreApplication::processEvents();
        return dock;
    }
};

} // namespace

TEST_F(WindowPicturesTest, live_picture_in_colour) {
    startLive({colourCamera()});
    page().setPixelSize(0.5);
    if (areSaved())
        settle();
    EXPECT_EQ(cutOff(), QStringList());
    save(window(), u"live.jpg"_qs);
}

TEST_F(WindowPicturesTest, russian_texts_in_dark_colours) {
    startLive({colourCamera()}, u"dark"_qs, u"ru"_qs);
    if (areSaved())
        settle();
    EXPECT_EQ(cutOff(), QStringList());
    EXPECT_TRUE(window().windowTitle().contains(u"Имитация камеры"_qs));
    EXPECT_LT(window().palette().color(QPalette::Window).lightness(), 80);
    save(window(), u"dark-ru.jpg"_qs);
}

TEST_F(WindowPicturesTest, the_selected_page_of_the_exposure_is_framed_in_light_and_in_dark) {
    for (const QString& theme : {u"light"_qs, u"dark"_qs}) {
        start({colourCamera()}, {u"--theme"_qs, theme});
        auto& video = widget<QPushButton>(u"pbVideo"_qs);
        auto& trigger = widget<QPushButton>(u"pbTrigger"_qs);
        const QColor highlight = window().palette().color(QPalette::Highlight);
        EXPECT_GT(colourShare(highlight, video), 0.1) << theme.toStdString();
        EXPECT_EQ(colourShare(highlight, trigger), 0) << theme.toStdString();
        QTest::mouseClick(&trigger, Qt::LeftButton);
        EXPECT_GT(colourShare(highlight, trigger), 0.1) << theme.toStdString();
        EXPECT_EQ(colourShare(highlight, video), 0) << theme.toStdString();
        end();
    }
}

TEST_F(WindowPicturesTest, histogram_with_a_logarithmic_scale) {
    startLive({colourCamera()});
    QDockWidget& histogram = dock("histogramDock");
    const QImage before = histogram.grab().toImage();
    for (QCheckBox* box : histogram.findChildren<QCheckBox*>())
        box->click();
    EXPECT_NE(histogram.grab().toImage(), before);
    save(histogram, u"histogram.png"_qs);
}

TEST_F(WindowPicturesTest, clipped_pixels_are_marked_in_red) {
    startLive({colourCamera()});
    if (areSaved())
        settle();
    widget<PDoubleRangeWidget>(u"exposureTime"_qs).setValue(11.8);
    widget<QAction>(u"clipped"_qs).trigger();
    EXPECT_TRUE(waitUntil([this] { return redShare() > 0.02; })); // the empty slide
    EXPECT_LT(redShare(), 0.5);                                   // not the tissue
    const auto& shownShare = widget<QLabel>(u"overexposed"_qs);
    EXPECT_TRUE(waitUntil([&] { return !shownShare.text().startsWith(u"0.00"_qs); }));
    save(window(), u"clipped.jpg"_qs);
}

TEST_F(WindowPicturesTest, a_setting_that_was_searched_for) {
    startLive({colourCamera()});
    QTest::keyClicks(&widget<QLineEdit>(u"settingsFilter"_qs), u"co"_qs);
    QDockWidget& settings = dock("settingsDock");
    EXPECT_EQ(cutOff(), QStringList());
    save(settings, u"settings.png"_qs);
}

TEST_F(WindowPicturesTest, cameras_open_ready_and_unplugged) {
    startLive({colourCamera(), camera(u"cam-2"_qs, u"S0002"_qs), camera(u"cam-3"_qs, u"S0003"_qs)});
    auto& list = widget<QListWidget>(u"cameras"_qs);
    list.setCurrentRow(1);
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_TRUE(unplug("cam-2"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    ASSERT_EQ(list.count(), 3);
    EXPECT_TRUE(list.item(0)->text().contains(u"open"_qs));
    EXPECT_TRUE(list.item(1)->text().contains(u"ready"_qs));
    EXPECT_TRUE(list.item(2)->text().contains(u"unplugged"_qs));
    EXPECT_EQ(list.currentRow(), 2); // the same camera as before
    save(dock("cameraList"), u"cameras.png"_qs);
}

TEST_F(WindowPicturesTest, a_recording_says_how_far_it_is) {
    startLive({colourCamera()});
    widget<QSpinBox>(u"recordFrames"_qs).setValue(150);
    QTest::mouseClick(&widget<QPushButton>(u"recordButton"_qs), Qt::LeftButton);
    auto& bar = widget<QProgressBar>(u"recordBar"_qs);
    ASSERT_TRUE(waitUntil([&] { return bar.value() >= bar.maximum() / 10; }));
    const QString text = widget<QLabel>(u"recordText"_qs).text();
    // More than 100 frames, at 15 a second or fewer.
    const QRegularExpressionMatch left =
        QRegularExpression(u"Time left: 0:(\\d\\d):(\\d\\d)"_qs).match(text);
    ASSERT_TRUE(left.hasMatch()) << text.toStdString();
    EXPECT_GE(60 * left.captured(1).toInt() + left.captured(2).toInt(), 5);
    EXPECT_EQ(cutOff(), QStringList());
    save(dock("recordDock"), u"recording.png"_qs);
    QTest::mouseClick(&widget<QPushButton>(u"recordButton"_qs), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return !widget<QAction>(u"record"_qs).isChecked(); }));
}

TEST_F(WindowPicturesTest, frames_that_were_lost_are_accounted_for) {
    faults = {QJsonObject{{u"do"_qs, u"pushMalformed"_qs},
                          {u"camera"_qs, u"cam-1"_qs},
                          {u"afterFrames"_qs, 3},
                          {u"width"_qs, 10},
                          {u"height"_qs, 10},
                          {u"bits"_qs, 24},
                          {u"sizeImage"_qs, 7}}};
    startLive({colourCamera()});
    QDockWidget& frames = dock("framesDock");
    const auto& table = widget<QTreeWidget>(u"frames"_qs);
    ASSERT_TRUE(waitUntil([&] {
        const auto found = table.findItems(u"Dropped: wrong size"_qs, Qt::MatchExactly);
        return found.size() == 1 && found.first()->text(1) == u"1"_qs;
    }));
    EXPECT_EQ(cutOff(), QStringList());
    save(frames, u"frames.png"_qs);
}

TEST_F(WindowPicturesTest, the_log_has_what_the_camera_refused) {
    faults = {QJsonObject{{u"do"_qs, u"fail"_qs},
                          {u"function"_qs, u"Toupcam_put_AutoExpoTarget"_qs},
                          {u"result"_qs, int(0x80004005)}}};
    startLive({colourCamera()});
    QDockWidget& log = dock("logDock");
    PDeviceProperty* const exposure = inFront().device()->getProperty("extexposure");
    exposure->setValue(exposure->valueInner());
    auto& text = widget<QPlainTextEdit>(u"logText"_qs);
    EXPECT_TRUE(waitUntil([&] { return text.toPlainText().contains(u"Failed TOUPCAM_OP"_qs); }));
    save(log, u"log.png"_qs);
}

TEST_F(WindowPicturesTest, a_triggered_sequence_is_recorded_with_progress) {
    startLive({colourCamera()});
    QDockWidget& settings = dock("settingsDock");
    auto& live = widget<QAction>(u"live"_qs);
    live.trigger();
    // A live frame that is still in delivery would count as one of the sequence.
    ASSERT_TRUE(waitUntil([this] { return inFront().ledger().waiting == 0; }));
    widget<QPushButton>(u"pbTrigger"_qs).click();
    live.trigger();
    widget<QSpinBox>(u"sMS"_qs).setValue(9);
    widget<QSpinBox>(u"sSec"_qs).setValue(0);
    widget<QSpinBox>(u"spincount"_qs).setValue(25);
    ASSERT_TRUE(settings.isVisible());
    ASSERT_TRUE(waitUntil([this] { return inFront().isTriggered(); }));
    auto& banner = widget<QLabel>(u"banner"_qs);
    EXPECT_TRUE(banner.text().contains(u"Pictures taken: 0"_qs)) << banner.text().toStdString();

    widget<QSpinBox>(u"recordFrames"_qs).setValue(25);
    QTest::mouseClick(&widget<QPushButton>(u"recordButton"_qs), Qt::LeftButton);
    widget<QPushButton>(u"pbSequence"_qs).click();
    EXPECT_TRUE(waitUntil([&] { return banner.text().contains(u"Pictures taken: 1"_qs); }));
    ASSERT_TRUE(waitUntil([this] { return inFront().triggeredPictures() >= 10; }));
    save(window(), u"trigger.jpg"_qs);
    auto& text = widget<QLabel>(u"recordText"_qs);
    EXPECT_TRUE(waitUntil([&] { return text.text().contains(u"Recorded 25 frames"_qs); }))
        << text.text().toStdString();
    EXPECT_TRUE(waitUntil([this] { return inFront().triggeredPictures() == 25; }));
}

TEST_F(WindowPicturesTest, no_camera) {
    QJsonObject away = colourCamera();
    away.insert(u"plugged"_qs, false);
    start({away}, {u"--theme"_qs, u"light"_qs});
    window().resize(1000, 640);
    EXPECT_TRUE(widget<QWidget>(u"welcome"_qs).isVisible());
    EXPECT_EQ(cutOff(), QStringList());
    save(window(), u"none.png"_qs);
}

TEST_F(WindowPicturesTest, an_unplugged_camera) {
    startLive({colourCamera()});
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    EXPECT_EQ(cutOff(), QStringList());
    save(window(), u"unplugged.jpg"_qs);
}

TEST_F(WindowPicturesTest, keys_and_versions_are_shown) {
    startLive({colourCamera()});
    for (const char* const page : {"help", "about"}) {
        widget<QAction>(QString::fromLatin1(page)).trigger();
        auto* const box = window().findChild<QMessageBox*>();
        ASSERT_NE(box, nullptr);
        const QString expected = page == std::string("help") ? u"Ctrl+K"_qs : u"simulated"_qs;
        EXPECT_TRUE(box->text().contains(expected)) << box->text().toStdString();
        if (page == std::string("help")) // the other one names folders of this machine
            save(*box, u"help.png"_qs);
        box->close();
        QCoreApplication::sendPostedEvents(box, QEvent::DeferredDelete);
    }
}
