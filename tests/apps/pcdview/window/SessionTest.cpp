// SPDX-License-Identifier: MIT
// The viewer as the user operates it, with keys and mouse, and with simulated cameras.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/common/reading/ExifTool.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/actions/PPictureController.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/PEnumeration.h>
#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QStyle>
#include <QTabBar>
#include <QTest>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace {

/// Notes a number when the window being made gets its first event.
class FirstWindowEvent : public QObject {
public:
    explicit FirstWindowEvent(std::function<qsizetype()> count)
        : m_count(std::move(count)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    std::optional<qsizetype> noted() const { return m_noted; }

protected:
    bool eventFilter(QObject* watched, QEvent*) override {
        if (!m_noted && qobject_cast<PMainWindow*>(watched) != nullptr)
            m_noted = m_count();
        return false;
    }

private:
    const std::function<qsizetype()> m_count;
    std::optional<qsizetype> m_noted;
};

/// Watches the panel that is detached.
class DetachedPanel : public QObject {
public:
    DetachedPanel() { QCoreApplication::instance()->installEventFilter(this); }

    bool isShownAfterItsWindow = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* const dock = qobject_cast<QDockWidget*>(watched);
        if (dock != nullptr && dock->isFloating() && event->type() == QEvent::Show)
            isShownAfterItsWindow = dock->parentWidget()->isVisible();
        return false;
    }
};

class SessionTest : public ViewSession {
protected:
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&window(), key, modifiers);
    }

    /// The camera owes a still, which does not arrive.
    void awaitStill() {
        start({camera()});
        ASSERT_TRUE(waitForNewFrames());
        ASSERT_TRUE(hold("cam-1"));
        key(Qt::Key_S, Qt::ControlModifier);
    }
    /// Closes the window, and calls this while the question is open, which must then close on its
    /// own.
    void closeDuring(const std::function<void()>& event) {
        QTimer::singleShot(0, &window(), [event] {
            const QPointer<QWidget> question = QApplication::activeModalWidget();
            ASSERT_NE(question, nullptr);
            event();
            EXPECT_TRUE(waitUntil([&] { return question.isNull() || !question->isVisible(); }));
            if (question != nullptr)
                question->close(); // nothing else would
        });
        window().close();
    }

    PDeviceProperty& property(const char* id) { return *inFront().device()->getProperty(id); }

    double meanShown() { return widget<QLabel>(u"mean"_qs).text().mid(2, 5).toDouble(); }

    QSize sizeShown() {
        const PImage& image = inFront().frame().image;
        return {int(image.width()), int(image.height())};
    }

    QByteArray pixels() {
        const PImage& image = inFront().frame().image;
        const auto* const bytes = image.rawData(PDIP::AccessMode::Read).constData();
        return QByteArray(reinterpret_cast<const char*>(bytes), qsizetype(image.dataSize()));
    }

    /// The point of the view that shows this point of the picture.
    QPoint inView(QPoint inPicture) {
        return page().view().geometryOfView().toView(inPicture).toPoint();
    }

    /// A camera that takes triggers, with exposures of up to a minute.
    static QJsonObject patientCamera() {
        QJsonObject camera = ViewSession::camera();
        camera.insert(u"flags"_qs, QJsonArray{u"TRIGGER_SOFTWARE"_qs});
        camera.insert(
            u"exposure"_qs,
            QJsonObject{{u"default"_qs, 5000}, {u"auto"_qs, false}, {u"max"_qs, 60'000'000}});
        return camera;
    }

    QStringList captures() const { return QDir(captureFolder()).entryList(QDir::Files); }

    /// The threads of the process, without those that Qt's pool keeps for half a minute after work.
    static qsizetype threads() {
        qsizetype count = QThreadPool::globalInstance()->activeThreadCount();
        const QDir tasks(u"/proc/self/task"_qs);
        for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile name(tasks.filePath(task + u"/comm"_qs));
            if (name.open(QIODevice::ReadOnly) && name.readAll().trimmed() != "Thread (pooled)")
                ++count;
        }
        return count;
    }
};

} // namespace

TEST_F(SessionTest, opens_the_first_camera_live_and_says_that_it_is_simulated) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    EXPECT_EQ(inFront().state(), PViewCamera::State::Live);
    EXPECT_TRUE(window().windowTitle().contains(u"Simulated camera"_qs));
    EXPECT_TRUE(window().windowTitle().contains(u"S0001"_qs));
    EXPECT_EQ(sizeShown(), QSize(320, 240));
}

TEST_F(SessionTest, the_camera_exposes_while_the_window_is_made) {
    const FirstWindowEvent event([] { return calls(u"Toupcam_StartPushMode"_qs).size(); });
    start({camera()});
    ASSERT_TRUE(event.noted());
    EXPECT_EQ(calls(u"Toupcam_StartPushMode"_qs).size(), *event.noted());
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(SessionTest, desktops_know_the_window_by_name_and_icon) {
    start({camera()});
    EXPECT_EQ(QGuiApplication::desktopFileName(), u"pcdview"_qs);
    QList<int> widths;
    for (const QSize& size : window().windowIcon().availableSizes())
        widths.append(size.width());
    std::sort(widths.begin(), widths.end());
    EXPECT_EQ(widths, (QList<int>{16, 24, 32, 48, 64, 128, 256}));
}

TEST_F(SessionTest, frames_are_shown_without_reading_the_modes_from_the_camera) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    const qsizetype before = calls(u"Toupcam_get_Resolution"_qs).size();
    EXPECT_GT(before, 0);
    const quint64 shownBefore = inFront().frame().stamp->sequence;
    ASSERT_TRUE(waitUntil([&] { return inFront().frame().stamp->sequence > shownBefore + 5; }));
    EXPECT_EQ(calls(u"Toupcam_get_Resolution"_qs).size(), before);
}

TEST_F(SessionTest, without_a_camera_says_what_to_do_until_one_comes) {
    QJsonObject away = camera();
    away.insert(u"plugged"_qs, false);
    start({away});
    EXPECT_TRUE(widget<QWidget>(u"welcome"_qs).isVisible());
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return cameraTabs().currentPage() != nullptr; }));
    EXPECT_TRUE(waitForNewFrames());
    EXPECT_FALSE(widget<QWidget>(u"welcome"_qs).isVisible());
}

TEST_F(SessionTest, a_longer_exposure_moves_the_histogram) {
    start({camera()});
    ASSERT_TRUE(waitUntil([this] { return meanShown() > 0; }));
    const double before = meanShown();
    property("autoexpottime").setValue(8000u);
    EXPECT_TRUE(waitUntil([&] { return meanShown() > before * 1.2; }));
}

TEST_F(SessionTest, a_setting_is_found_by_its_name_and_changed_with_the_keyboard) {
    start({camera()});
    ASSERT_TRUE(waitUntil([this] { return meanShown() > 0; }));
    const double before = meanShown();
    QTest::keyClicks(&widget<QLineEdit>(u"settingsFilter"_qs), u"brightness"_qs);
    QList<QSlider*> sliders;
    for (QSlider* slider : widget<QDockWidget>(u"settingsDock"_qs).findChildren<QSlider*>()) {
        if (slider->isVisible())
            sliders.append(slider);
    }
    ASSERT_EQ(sliders.size(), 1);
    QTest::keyClick(sliders[0], Qt::Key_End);
    ASSERT_TRUE(waitUntil([this] { return property("brightness").valueInner().toInt() == 64; }));
    EXPECT_TRUE(waitUntil([&] { return meanShown() > before + 10; }));
}

TEST_F(SessionTest, a_setting_is_found_by_the_words_on_its_panel_in_the_language_shown) {
    const QStringList words{u"gain"_qs, u"temperature"_qs, u"fan speed"_qs};
    const QStringList russian{u"усиление"_qs, u"температура"_qs, u"вентилятор"_qs};
    for (const auto& [language, texts] : {std::pair{u"en"_qs, words}, {u"ru"_qs, russian}}) {
        QJsonObject cooled = camera();
        cooled.insert(u"flags"_qs, QJsonArray{u"TEC_ONOFF"_qs, u"FAN"_qs});
        start({cooled}, {u"--lang"_qs, language});
        const QStringList panels{u"exposureGain"_qs, u"PTTecControl"_qs, u"fanOnOff"_qs};
        for (int i = 0; i < texts.size(); ++i) {
            auto& filter = widget<QLineEdit>(u"settingsFilter"_qs);
            filter.clear();
            filter.insert(texts[i]); // QTest has no Cyrillic keys
            EXPECT_TRUE(widget<QWidget>(panels[i]).isVisible()) << texts[i].toStdString();
        }
        end();
    }
}

TEST_F(SessionTest, a_region_drawn_with_the_mouse_is_what_the_camera_sends) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(page().view().tool(), PImageView::Tool::Region);
    drag(inView({40, 20}), inView({200, 140}));
    EXPECT_TRUE(waitUntil([this] { return sizeShown().width() < 170; }));
    const QRect region = property("roi").valueInner().toRect();
    EXPECT_EQ(sizeShown(), region.size());
    EXPECT_NEAR(region.x(), 40, 4);
    EXPECT_NEAR(region.y(), 20, 4);
    EXPECT_NEAR(region.width(), 160, 4);
    EXPECT_NEAR(region.height(), 120, 4);
    EXPECT_EQ(page().view().tool(), PImageView::Tool::Move);

    key(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(waitUntil([this] { return sizeShown() == QSize(320, 240); }));
}

TEST_F(SessionTest, another_resolution_is_chosen_in_the_tool_bar) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    auto& modes = widget<QComboBox>(u"modes"_qs);
    ASSERT_EQ(modes.count(), 2);
    QTest::keyClick(&modes, modes.currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_TRUE(waitUntil([this] { return sizeShown() == QSize(160, 120); }));
}

TEST_F(SessionTest, a_still_picture_is_saved_beside_the_live_one) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return captures().filter(u".png"_qs).size() == 1; }));
    ASSERT_TRUE(waitUntil([this] { return !captures().first().endsWith(u".part"_qs); }));
    const QImage saved(QDir(captureFolder()).filePath(captures().first()));
    EXPECT_EQ(saved.size(), QSize(320, 240));
    EXPECT_TRUE(captures().first().contains(u"S0001"_qs));
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(SessionTest, a_still_picture_has_the_resolution_of_the_specimen) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    page().setPixelSize(0.5);
    widget<QAction>(u"snapshot"_qs).trigger();
    // While it is being written, its name has another ending.
    ASSERT_TRUE(waitUntil([this] { return captures().value(0).endsWith(u".png"_qs); }));
    const QJsonObject tags = exifToolTags(captureFolder() + u'/' + captures().value(0));
    EXPECT_EQ(tags.value(u"PNG-pHYs:PixelsPerUnitX"_qs).toInt(), 2'000'000);
    EXPECT_EQ(tags.value(u"IFD0:XResolution"_qs).toDouble(), 20'000);
    EXPECT_TRUE(tags.value(u"IFD0:Software"_qs).toString().startsWith(u"pcdview"_qs));
}

TEST_F(SessionTest, a_still_that_does_not_arrive_before_the_camera_is_unplugged_is_reported) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    auto* const pictures = window().findChild<PPictureController*>();
    ASSERT_NE(pictures, nullptr);
    const QSignalSpy messages(pictures, &PPictureController::messageChanged);
    ASSERT_TRUE(hold("cam-1"));
    key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(messages.size(), 1);
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages[1].value(0).toString(),
              inFront().identity().id + u": No still taken: the camera was unplugged"_qs);
}

TEST_F(SessionTest, closing_asks_about_stills_that_have_not_arrived_and_logs_their_loss) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    ASSERT_TRUE(hold("cam-1"));
    key(Qt::Key_S, Qt::ControlModifier);
    key(Qt::Key_S, Qt::ControlModifier);
    const QString id = inFront().identity().id;
    QString question;
    const auto answer = [&](QMessageBox::StandardButton button) {
        question.clear();
        QTimer::singleShot(0, &window(), [&question, button] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            question = box->text();
            box->button(button)->click();
        });
        window().close();
    };
    answer(QMessageBox::No);
    EXPECT_EQ(question, u"Still pictures that have not arrived yet: 2. Close without them?"_qs);
    EXPECT_TRUE(window().isVisible());
    const PLogCapture log;
    answer(QMessageBox::Yes);
    EXPECT_FALSE(window().isVisible());
    end();
    EXPECT_TRUE(log.contains(id + u": still pictures that had not arrived: 2"_qs));
}

TEST_F(SessionTest,
       a_still_that_arrives_while_the_question_is_open_is_saved_and_the_window_closes) {
    ASSERT_NO_FATAL_FAILURE(awaitStill());
    closeDuring([this] { emit inFront().snapshotTaken(inFront().frame()); });
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(captures().size(), 1);
}

TEST_F(SessionTest, a_still_that_cannot_arrive_any_more_keeps_the_window_that_says_so) {
    ASSERT_NO_FATAL_FAILURE(awaitStill());
    closeDuring([] { EXPECT_TRUE(unplug("cam-1")); });
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().statusBar()->currentMessage(),
              inFront().identity().id + u": No still taken: the camera was unplugged"_qs);
}

TEST_F(SessionTest, nothing_is_reported_of_a_still_that_has_arrived_when_the_camera_is_unplugged) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return captures().size() == 1; }));
    auto* const pictures = window().findChild<PPictureController*>();
    ASSERT_NE(pictures, nullptr);
    const QSignalSpy messages(pictures, &PPictureController::messageChanged);
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    for (const QList<QVariant>& message : messages)
        EXPECT_FALSE(message.value(0).toString().contains(u"No still taken"_qs));
}

TEST_F(SessionTest, an_unplugged_camera_comes_back_with_its_settings) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    property("contrast").setValue(40);
    property("hflip").setValue(true);
    ASSERT_TRUE(waitForNewFrames());

    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    EXPECT_TRUE(window().windowTitle().contains(u"unplugged"_qs));
    EXPECT_TRUE(widget<QLabel>(u"banner"_qs).isVisible());
    EXPECT_EQ(sizeShown(), QSize(320, 240));

    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
    EXPECT_TRUE(waitForNewFrames());
    EXPECT_EQ(property("contrast").valueInner(), QVariant(40));
    EXPECT_EQ(property("hflip").valueInner(), QVariant(true));
    EXPECT_EQ(inFront().notes(), QStringList());
    EXPECT_FALSE(widget<QLabel>(u"banner"_qs).isVisible());
}

TEST_F(SessionTest, what_is_set_while_the_cable_is_out_does_not_spoil_what_is_remembered) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    property("contrast").setValue(40);
    key(Qt::Key_L, Qt::ControlModifier);
    ASSERT_EQ(inFront().state(), PViewCamera::State::Paused);
    QCoreApplication::processEvents();

    const QPointer<PDevice> before = inFront().device();
    ASSERT_TRUE(unplug("cam-1"));
    property("temp").setValue(6000); // the loss is not noticed yet, and it reads 0
    QCoreApplication::processEvents();
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([&] { return before.isNull() && inFront().device() != nullptr; }));
    EXPECT_EQ(property("contrast").valueInner(), QVariant(40));
    EXPECT_EQ(inFront().notes(), QStringList());
}

TEST_F(SessionTest, two_cameras_have_a_tab_each) {
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    auto& list = widget<QListWidget>(u"cameras"_qs);
    ASSERT_EQ(list.count(), 2);
    list.setCurrentRow(1);
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_TRUE(window().windowTitle().contains(u"S0002"_qs));
    EXPECT_TRUE(waitForNewFrames());
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(window().windowTitle().contains(u"S0001"_qs));
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(SessionTest, the_live_picture_stops_and_goes_on) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(inFront().state(), PViewCamera::State::Paused);
    EXPECT_EQ(widget<QLabel>(u"pace"_qs).text(), u"stopped"_qs);
    key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(inFront().state(), PViewCamera::State::Live);
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(SessionTest, the_full_screen_shows_the_picture_alone_until_escape) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_F11);
    EXPECT_TRUE(window().isFullScreen());
    EXPECT_FALSE(window().menuBar()->isVisible());
    EXPECT_FALSE(widget<QDockWidget>(u"settingsDock"_qs).isVisible());
    EXPECT_FALSE(widget<QTabBar>(u"tabs"_qs).isVisible());
    key(Qt::Key_Escape);
    EXPECT_FALSE(window().isFullScreen());
    EXPECT_TRUE(window().menuBar()->isVisible());
    EXPECT_TRUE(widget<QDockWidget>(u"settingsDock"_qs).isVisible());
    EXPECT_FALSE(widget<QDockWidget>(u"logDock"_qs).isVisible());
}

TEST_F(SessionTest, the_full_screen_needs_a_camera) {
    start({});
    key(Qt::Key_F11);
    EXPECT_FALSE(window().isFullScreen());
    EXPECT_TRUE(window().menuBar()->isVisible());
    EXPECT_FALSE(widget<QAction>(u"fullScreen"_qs).isEnabled());
    end();
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_F11);
    ASSERT_TRUE(window().isFullScreen());
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().isFullScreen());
    EXPECT_TRUE(window().menuBar()->isVisible());
}

TEST_F(SessionTest, a_camera_behind_another_tab_that_is_unplugged_is_in_the_status_bar) {
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    ASSERT_TRUE(unplug("cam-1"));
    const auto shows = [this](const QString& message) {
        return waitUntil([&] { return window().statusBar()->currentMessage() == message; });
    };
    EXPECT_TRUE(shows(u"Small-S0001 was unplugged"_qs));
    ASSERT_TRUE(plug("cam-1"));
    EXPECT_TRUE(shows(u"Small-S0001 is plugged in again"_qs));
}

TEST_F(SessionTest, at_first_the_window_fits_the_screen_with_its_title_bar) {
    start({camera()});
    const int titleBar = window().style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize room = window().screen()->availableSize();
    ASSERT_LT(room.height(), PMainWindow::usualSize().height()); // else it fits anyway
    EXPECT_LE(window().height() + titleBar, room.height());
}

TEST_F(SessionTest, panels_are_where_they_were_the_last_time) {
    start({camera()});
    widget<QDockWidget>(u"histogramDock"_qs).close();
    widget<QDockWidget>(u"logDock"_qs).show();
    end();
    start({camera()});
    EXPECT_FALSE(widget<QDockWidget>(u"histogramDock"_qs).isVisible());
    EXPECT_TRUE(widget<QDockWidget>(u"logDock"_qs).isVisible());
}

TEST_F(SessionTest, a_panel_that_was_detached_the_last_time_is_shown_after_the_window) {
    start({camera()});
    widget<QDockWidget>(u"cameraList"_qs).setFloating(true);
    end();
    const DetachedPanel panel;
    start({camera()});
    EXPECT_TRUE(waitUntil([&] { return panel.isShownAfterItsWindow; }));
    EXPECT_TRUE(widget<QDockWidget>(u"cameraList"_qs).isFloating());
    EXPECT_TRUE(widget<QDockWidget>(u"cameraList"_qs).isVisible());
}

TEST_F(SessionTest, zeros_of_a_lost_cable_are_not_what_is_restored) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    property("autoexpottime").setValue(7000u);
    ASSERT_TRUE(waitForNewFrames());
    fail("Toupcam_get_ExpoTime", 1); // the cable is out, which is not noticed yet
    const qsizetype before = calls(u"Toupcam_get_ExpoTime"_qs).size();
    ASSERT_TRUE(waitUntil([&] { return calls(u"Toupcam_get_ExpoTime"_qs).size() > before + 1; }));
    EXPECT_EQ(property("autoexpottime").valueInner(), 7000u); // not the zero of a failed reading
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
    EXPECT_EQ(property("autoexpottime").valueInner().toUInt(), 7000u);
    EXPECT_EQ(inFront().notes(), QStringList());
}

TEST_F(SessionTest, the_size_of_a_pixel_follows_resolution_and_binning) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    page().setPixelSize(0.5);
    EXPECT_EQ(page().pixelSizeOfPicture(), 0.5);
    const auto modes = inFront().device()->getSupportModes();
    ASSERT_TRUE(inFront().setMode(modes.last()).isOk());
    ASSERT_TRUE(waitUntil([this] { return sizeShown() == QSize(160, 120); }));
    EXPECT_EQ(page().pixelSizeOfPicture(), 1.0);

    const auto choices = property("binning").rangeInner().value<PEnumeration>().items();
    const auto twoByTwo = std::find_if(choices.begin(), choices.end(), [](const auto& item) {
        return item.name.contains(u"2x2"_qs);
    });
    ASSERT_NE(twoByTwo, choices.end());
    property("binning").setValue(twoByTwo->id);
    ASSERT_TRUE(waitUntil([this] { return sizeShown() == QSize(80, 60); }));
    EXPECT_EQ(page().pixelSizeOfPicture(), 2.0);
    EXPECT_EQ(page().pixelSize(), 0.5);
}

TEST_F(SessionTest, the_region_tool_does_not_wait_in_a_tab_that_was_left) {
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    PCameraPage& first = page();
    key(Qt::Key_D, Qt::ControlModifier);
    ASSERT_EQ(first.view().tool(), PImageView::Tool::Region);
    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    EXPECT_EQ(first.view().tool(), PImageView::Tool::Move);
    EXPECT_FALSE(widget<QAction>(u"region"_qs).isChecked());
}

TEST_F(SessionTest, a_camera_that_comes_back_leaves_the_tab_in_front_alone) {
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    PCameraPage& first = page();
    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([&] { return first.camera().state() == PViewCamera::State::Unplugged; }));
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([&] { return first.camera().state() == PViewCamera::State::Live; }));
    EXPECT_EQ(inFront().identity().serial, u"S0002"_qs);
}

TEST_F(SessionTest, a_camera_that_could_not_be_opened_is_tried_again) {
    faults = {QJsonObject{{u"do"_qs, u"fail"_qs},
                          {u"function"_qs, u"Toupcam_StartPushMode"_qs},
                          {u"count"_qs, 1},
                          {u"result"_qs, int(0x80004005)}}};
    start({camera()});
    EXPECT_EQ(inFront().state(), PViewCamera::State::NotOpen);
    EXPECT_FALSE(window().windowTitle().contains(u"unplugged"_qs));
    EXPECT_EQ(widget<QLabel>(u"noSettings"_qs).text(), u"The camera is not open."_qs);
    EXPECT_TRUE(widget<QLabel>(u"banner"_qs).text().contains(u"cannot be opened"_qs));
    EXPECT_TRUE(widget<QListWidget>(u"cameras"_qs).item(0)->text().contains(u"not open"_qs));
    widget<QAction>(u"search"_qs).trigger();
    EXPECT_EQ(inFront().state(), PViewCamera::State::Live)
        << widget<QLabel>(u"banner"_qs).text().toStdString();
    EXPECT_TRUE(waitForNewFrames());
    EXPECT_FALSE(widget<QLabel>(u"banner"_qs).isVisible());
}

TEST_F(SessionTest, a_camera_that_could_not_be_opened_and_is_unplugged_then_is_called_unplugged) {
    faults = {QJsonObject{{u"do"_qs, u"fail"_qs},
                          {u"function"_qs, u"Toupcam_StartPushMode"_qs},
                          {u"count"_qs, 1},
                          {u"result"_qs, int(0x80004005)}}};
    start({camera()});
    ASSERT_EQ(inFront().state(), PViewCamera::State::NotOpen);
    ASSERT_TRUE(unplug("cam-1"));
    EXPECT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    EXPECT_TRUE(window().windowTitle().contains(u"unplugged"_qs));
    EXPECT_EQ(widget<QLabel>(u"noSettings"_qs).text(), u"The camera is unplugged."_qs);
    EXPECT_FALSE(widget<QLabel>(u"banner"_qs).text().contains(u"cannot be opened"_qs));
    ASSERT_TRUE(plug("cam-1"));
    EXPECT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
}

TEST_F(SessionTest, contrast_is_stretched_on_the_screen_also_while_the_live_picture_is_stopped) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    key(Qt::Key_L, Qt::ControlModifier);
    QCoreApplication::processEvents(); // a frame that was taken before the stop is still shown
    widget<QDockWidget>(u"histogramDock"_qs).close();
    const QImage before = page().view().grab().toImage();
    const QByteArray taken = pixels();
    key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return page().view().grab().toImage() != before; }));
    EXPECT_TRUE(pixels() == taken);
    key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(page().view().grab().toImage(), before);
}

TEST_F(SessionTest, a_long_exposure_says_when_its_picture_comes) {
    start({patientCamera()});
    ASSERT_TRUE(waitForNewFrames());
    const auto& pace = widget<QLabel>(u"pace"_qs);
    ASSERT_TRUE(waitUntil([&] { return pace.text().contains(u"fps"_qs); }));
    property("autoexpottime").setValue(40'000'000u);
    EXPECT_TRUE(waitUntil([&] { return pace.text().startsWith(u"next picture in "_qs); }))
        << pace.text().toStdString();
    key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(pace.text(), u"stopped"_qs);
    key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(pace.text().startsWith(u"next picture in "_qs)) << pace.text().toStdString();
}

TEST_F(SessionTest, a_triggered_picture_is_awaited_only_while_its_run_is_in_progress) {
    start({patientCamera()});
    ASSERT_TRUE(waitForNewFrames());
    widget<QPushButton>(u"pbTrigger"_qs).click();
    widget<QSpinBox>(u"sSec"_qs).setValue(30);
    const auto& exposure = widget<QLabel>(u"exposure"_qs);
    ASSERT_TRUE(waitUntil([&] { return exposure.text().startsWith(u"30 s"_qs); }));
    const auto& pace = widget<QLabel>(u"pace"_qs);
    EXPECT_TRUE(waitUntil([&] { return pace.text().contains(u"fps"_qs); }));
    widget<QPushButton>(u"pbRunOnce"_qs).click();
    EXPECT_TRUE(waitUntil([&] { return pace.text().startsWith(u"next picture in "_qs); }));
    widget<QPushButton>(u"pbRunOnce"_qs).click();
    EXPECT_TRUE(waitUntil([&] { return pace.text().contains(u"fps"_qs); }));
}

TEST_F(SessionTest, a_run_is_not_counted_down_behind_another_tab) {
    start({patientCamera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    widget<QPushButton>(u"pbTrigger"_qs).click();
    widget<QSpinBox>(u"sSec"_qs).setValue(30);
    ASSERT_TRUE(waitUntil([this] { return property("autoexpottime").valueInner() == 30'000'000; }));
    widget<QPushButton>(u"pbRunOnce"_qs).click();
    const PViewCamera& first = inFront();
    ASSERT_TRUE(waitUntil([&] { return first.untilNextPicture().has_value(); }));
    auto& list = widget<QListWidget>(u"cameras"_qs);
    list.setCurrentRow(1);
    QTest::keyClick(&list, Qt::Key_Return); // its panel, which had the run, is gone
    ASSERT_NE(&inFront(), &first);
    EXPECT_FALSE(first.untilNextPicture());
}

TEST_F(SessionTest, a_whole_session_from_opening_to_closing) {
    start({});
    end(); // from now on Qt has created what it keeps
    const qsizetype threadsBefore = threads();

    start({camera()});
    ASSERT_TRUE(waitUntil([this] { return meanShown() > 0; }));
    const double meanBefore = meanShown();
    property("autoexpottime").setValue(7000u);
    ASSERT_TRUE(waitUntil([&] { return meanShown() > meanBefore * 1.1; }));

    key(Qt::Key_D, Qt::ControlModifier);
    drag(inView({40, 20}), inView({200, 140}));
    const QRect region = property("roi").valueInner().toRect();
    ASSERT_TRUE(waitUntil([&] { return sizeShown() == region.size(); }));

    key(Qt::Key_R, Qt::ControlModifier);
    auto& text = widget<QLabel>(u"recordText"_qs);
    ASSERT_TRUE(waitUntil([&] { return text.text().contains(u"Recorded 50 frames"_qs); }))
        << text.text().toStdString();
    ASSERT_EQ(captures().size(), 1);
    QImageReader recording(QDir(captureFolder()).filePath(captures().first()));
    EXPECT_EQ(recording.imageCount(), 50);
    EXPECT_EQ(recording.read().size(), region.size());

    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Unplugged; }));
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
    EXPECT_EQ(property("autoexpottime").valueInner().toUInt(), 7000u);
    EXPECT_EQ(property("roi").valueInner().toRect(), region);
    EXPECT_TRUE(waitUntil([&] { return sizeShown() == region.size(); }));
    EXPECT_EQ(inFront().notes(), QStringList());
    EXPECT_TRUE(inFront().ledger().isBalanced());

    end();
    EXPECT_TRUE(waitUntil([&] { return threads() <= threadsBefore; }));
}

TEST_F(SessionTest, closing_leaves_nothing_running) {
    start({});
    end(); // from now on Qt has created what it keeps
    const qsizetype before = threads();
    start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    EXPECT_GT(threads(), before);
    end();
    EXPECT_TRUE(waitUntil([&] { return threads() <= before; }));
}

TEST_F(SessionTest, a_window_that_is_closed_while_stills_are_being_saved_waits_for_them) {
    start({camera()});
    ASSERT_TRUE(waitForNewFrames());
    auto* const pictures = window().findChild<PPictureController*>();
    ASSERT_NE(pictures, nullptr);
    QStringList shown;
    QObject::connect(pictures, &PPictureController::unsavedChanged, pictures, [&](int unsaved) {
        shown.append(widget<QLabel>(u"unsaved"_qs).text());
        if (unsaved == 1 && shown.size() == 1)
            window().close();
    });
    key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return !window().isVisible(); }));
    EXPECT_EQ(shown, (QStringList{u"To be saved: 1"_qs, QString()}));
    EXPECT_EQ(captures().size(), 1);
}
