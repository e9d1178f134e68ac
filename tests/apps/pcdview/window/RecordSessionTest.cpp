// SPDX-License-Identifier: MIT
// Recording in the viewer as the user does it, with simulated cameras.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/property/PDeviceProperty.h>

#include <PGui/PNumberField.h>
#include <PGui/WidgetHands.h>

#include <apps/common/reading/OmeXml.h>
#include <apps/common/reading/TiffReadBack.h>
#include <apps/common/reading/ZarrReadBack.h>
#include <support/QtPrinters.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSettings>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <functional>

#include <sys/resource.h>

namespace {

class RecordSessionTest : public ViewSession {
protected:
    void SetUp() override {
        start({camera()});
        ASSERT_TRUE(waitForNewFrames());
    }

    void pressButton() {
        QTest::mouseClick(&widget<QPushButton>(u"recordButton"_qs), Qt::LeftButton);
    }
    QString text() { return widget<QLabel>(u"recordText"_qs).text(); }
    bool isRecording() { return widget<QAction>(u"record"_qs).isChecked(); }
    bool waitForText(const QString& part) {
        return waitUntil([&] { return !isRecording() && text().contains(part); });
    }
    void TearDown() override { EXPECT_EQ(questionsDue, 0) << "a question was not asked"; }

    /// Calls this with the next question.
    void withNext(const std::function<void(QMessageBox& box)>& act) {
        ++questionsDue;
        auto* const watch = new QTimer(&questions);
        QObject::connect(watch, &QTimer::timeout, &questions, [this, act, watch] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr)
                return; // a control sends what was chosen a turn later
            watch->stop();
            --questionsDue;
            act(*box);
        });
        watch->start(0);
    }
    void answerNext(QMessageBox::StandardButton answer) {
        activate();
        withNext([answer](QMessageBox& box) { box.button(answer)->click(); });
    }
    /// Checks the text of the next question, and answers No.
    void declineNext(const QString& question) {
        withNext([question](QMessageBox& box) {
            EXPECT_EQ(box.text().toStdString(), question.toStdString());
            box.button(QMessageBox::No)->click();
        });
    }
    /// Calls this while the next question is open, which must then close on its own.
    void expectNextClosesAfter(const std::function<void()>& event) {
        withNext([event](QMessageBox& box) {
            const QPointer<QWidget> question(&box);
            event();
            EXPECT_TRUE(waitUntil([&] { return question.isNull() || !question->isVisible(); }));
            if (question != nullptr)
                question->close(); // nothing else would
        });
    }
    void pressNext(Qt::Key key) {
        withNext([key](QMessageBox& box) { QTest::keyClick(&box, key); });
    }
    /// After a question was closed no window is active, but keys go to the active one.
    void activate() {
        window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
    /// Calls a function that must not open a question. If one opens, it is closed, as nothing else
    /// would answer it.
    static void unasked(const std::function<void()>& act) {
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, [] {
            if (QWidget* const box = QApplication::activeModalWidget()) {
                ADD_FAILURE() << "a question was asked";
                box->close();
            }
        });
        watch.start(0);
        act();
    }
    void pressKeyUnasked() {
        unasked([this] { pressKey(); });
    }
    void pressLiveKey() { QTest::keyClick(&window(), Qt::Key_L, Qt::ControlModifier); }
    void pressKey() { QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier); }

    /// Records until it is stopped.
    void startRecording() {
        widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
        pressButton();
        ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    }
    void endRecording() {
        pressButton();
        ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    }
    /// The control of the camera's setting with this title.
    template <typename Control>
    Control* setting(const QString& title) {
        for (Control* one : widget<QDockWidget>(u"settingsDock"_qs).findChildren<Control*>()) {
            if (one->accessibleName() == title)
                return one;
        }
        return nullptr;
    }
    /// Presses a key in a control, and lets it send what it sends.
    static void press(QWidget& control, Qt::Key key) {
        QTest::keyClick(&control, key);
        QCoreApplication::processEvents();
    }
    /// Chooses an item of a box in its list.
    static void choose(QComboBox& box, const QString& item) {
        box.showPopup();
        box.view()->setCurrentIndex(box.model()->index(box.findText(item), 0));
        press(*box.view(), Qt::Key_Return);
    }
    /// Loads a profile through the action and its dialog, and closes the report.
    void load(const QString& file) {
        QTimer::singleShot(0, &questions, [file] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->findChild<QLineEdit*>(u"fileNameEdit"_qs)->setText(file);
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        widget<QAction>(u"loadProfile"_qs).trigger();
        for (QMessageBox* report : window().findChildren<QMessageBox*>())
            delete report;
    }

    /// Opens two cameras, records the first one until it is stopped, and brings the second to the
    /// front.
    void recordFirstOfTwo() {
        end();
        start({camera(), camera(u"cam-2"_qs, u"S0002"_qs)});
        ASSERT_TRUE(waitForNewFrames());
        widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
        pressKeyUnasked();
        ASSERT_TRUE(waitUntil([this] { return written("Small-S0001") >= 5; }));
        ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
        ASSERT_TRUE(waitForNewFrames());
    }
    /// The number of frames in the file of this camera, according to the panel.
    int written(const char* camera) {
        const QRegularExpression number(u"%1\nWritten: (\\d+)"_qs.arg(QLatin1String(camera)));
        return number.match(text()).captured(1).toInt();
    }
    /// The recordings of a camera.
    QStringList recordedFiles(const QString& camera) const {
        return QDir(captureFolder()).entryList({camera + u"*.ome.tif"_qs});
    }
    bool isWhole(const QString& name) const {
        const QString file = QDir(captureFolder()).filePath(name);
        const OmeXml document(TiffReadBack(file).description());
        return document.complaints().isEmpty() && QImageReader(file).imageCount() >= 5;
    }
    /// True if the file has the ledger of its camera.
    bool hasLedger(const QString& name) const {
        const QString file = QDir(captureFolder()).filePath(name);
        const OmeXml document(TiffReadBack(file).description());
        return !document.note(u"Camera frames delivered"_qs).isEmpty();
    }
    int written() {
        static const QRegularExpression number(u"Written: (\\d+)"_qs);
        return number.match(text()).captured(1).toInt();
    }

    /// The one file or folder that was recorded.
    QString recorded() const {
        const QDir folder(captureFolder());
        const QStringList names = folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        EXPECT_EQ(names.size(), 1) << names.join(u' ').toStdString();
        return folder.filePath(names.value(0));
    }

    int questionsDue = 0;
    QObject questions; // pending answers end with the test
};

} // namespace

TEST_F(RecordSessionTest, fifty_frames_go_into_one_file_while_the_live_picture_goes_on) {
    pressButton();
    EXPECT_TRUE(isRecording());
    const quint64 before = inFront().frame().stamp->sequence;
    ASSERT_TRUE(waitForText(u"Recorded 50 frames"_qs)) << text().toStdString();
    EXPECT_GT(inFront().frame().stamp->sequence, before);
    EXPECT_TRUE(recorded().endsWith(u".ome.tif"_qs));
    QImageReader reader(recorded());
    EXPECT_EQ(reader.imageCount(), 50);
    EXPECT_EQ(reader.read().size(), QSize(320, 240));
    const OmeXml document(TiffReadBack(recorded()).description());
    EXPECT_EQ(document.complaints(), QString());
    EXPECT_EQ(document.elements("Plane").size(), 50);
    EXPECT_EQ(document.attribute("Plane", "ExposureTime"), u"5"_qs);
    EXPECT_EQ(document.attribute("DetectorSettings", "Binning"), u"1x1"_qs);
    EXPECT_EQ(document.note(u"Simulated"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Complete"_qs), u"yes"_qs);
}

TEST_F(RecordSessionTest, a_series_has_a_folder_of_its_own) {
    widget<QSpinBox>(u"recordFrames"_qs).setValue(5);
    widget<QComboBox>(u"recordFormat"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitForText(u"Recorded 5 frames"_qs)) << text().toStdString();
    const QStringList files = QDir(recorded()).entryList(QDir::Files);
    EXPECT_EQ(files.size(), 5);
    EXPECT_EQ(files.first(), u"frame-000001.png"_qs);
}

TEST_F(RecordSessionTest, a_folder_of_chunks_is_a_whole_recording) {
    widget<QSpinBox>(u"recordFrames"_qs).setValue(5);
    widget<QComboBox>(u"recordFormat"_qs).setCurrentIndex(3);
    pressButton();
    ASSERT_TRUE(waitForText(u"Recorded 5 frames"_qs)) << text().toStdString();
    EXPECT_TRUE(recorded().endsWith(u".ome.zarr"_qs)) << recorded().toStdString();
    const ZarrReadBack recording(recorded());
    EXPECT_EQ(recording.shape(), (std::vector<int>{5, 3, 240, 320}));
    for (int chunk = 0; chunk < 15; ++chunk)
        EXPECT_EQ(recording.chunk(chunk / 3, chunk % 3).size(), 320 * 240) << chunk;
    const OmeXml document(recording.xml());
    EXPECT_EQ(document.complaints(), QString());
    EXPECT_EQ(document.note(u"Complete"_qs), u"yes"_qs);
}

TEST_F(RecordSessionTest, stopping_keeps_what_was_taken) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    pressButton();
    ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
}

TEST_F(RecordSessionTest, unplugging_ends_it_with_a_whole_file) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitForText(u"unplugged"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
}

TEST_F(RecordSessionTest, a_full_disk_ends_it_with_the_reason) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 2'000'000; // eight frames, then none
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const auto restore = qScopeGuard([&] {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    });
    pressButton();
    ASSERT_TRUE(waitForText(u"ended early"_qs)) << text().toStdString();
    EXPECT_TRUE(text().contains(u".ome.tif"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 1);
    EXPECT_EQ(inFront().state(), PViewCamera::State::Live);
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(RecordSessionTest, stopping_before_the_set_end_is_not_called_complete) {
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    pressButton();
    ASSERT_TRUE(waitForText(u"it was stopped"_qs)) << text().toStdString();
    const OmeXml document(TiffReadBack(recorded()).description());
    EXPECT_EQ(document.note(u"Complete"_qs), u"no: it was stopped"_qs);
}

TEST_F(RecordSessionTest, the_live_picture_stops_only_if_the_user_gives_up_the_recording) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    declineNext(u"Recording in progress: Small-S0001. Stop recording and the live picture?"_qs);
    activate();
    pressLiveKey();
    EXPECT_TRUE(widget<QAction>(u"live"_qs).isChecked());
    const int before = written();
    ASSERT_TRUE(waitUntil([&] { return written() > before; }));
    answerNext(QMessageBox::Yes);
    pressLiveKey();
    EXPECT_EQ(inFront().state(), PViewCamera::State::Paused);
    ASSERT_TRUE(waitForText(u"the live picture was stopped"_qs)) << text().toStdString();
    EXPECT_GT(QImageReader(recorded()).imageCount(), before);
}

TEST_F(RecordSessionTest, the_live_picture_of_another_camera_stops_unasked) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    activate();
    unasked([this] { pressLiveKey(); });
    EXPECT_EQ(inFront().state(), PViewCamera::State::Paused);
    const int before = written("Small-S0001");
    EXPECT_TRUE(waitUntil([&] { return written("Small-S0001") > before; }));
}

TEST_F(RecordSessionTest, the_live_picture_goes_on_if_the_recording_ends_during_the_question) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    expectNextClosesAfter([this] { widget<QPushButton>(u"recordButton"_qs).click(); });
    activate();
    pressLiveKey();
    ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    EXPECT_TRUE(widget<QAction>(u"live"_qs).isChecked());
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(RecordSessionTest, the_resolution_changes_only_if_the_user_gives_up_the_recording) {
    auto& modes = widget<QComboBox>(u"modes"_qs);
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    unasked([&] { // the one that it has
        modes.showPopup();
        QTest::keyClick(modes.view(), Qt::Key_Return);
    });
    declineNext(
        u"Recording in progress: Small-S0001. Stop recording and change the resolution?"_qs);
    QTest::keyClick(&modes, Qt::Key_Down);
    EXPECT_EQ(modes.currentText(), u"320x240"_qs);
    const int before = written();
    ASSERT_TRUE(waitUntil([&] { return written() > before; }));
    answerNext(QMessageBox::Yes);
    QTest::keyClick(&modes, Qt::Key_Down);
    EXPECT_EQ(modes.currentText(), u"160x120"_qs);
    ASSERT_TRUE(waitForText(u"ended early"_qs)) << text().toStdString();
    ASSERT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 160; }));
    EXPECT_GT(QImageReader(recorded()).imageCount(), before);
}

TEST_F(RecordSessionTest, the_region_changes_only_if_the_user_gives_up_the_recording) {
    const QString question =
        u"Recording in progress: Small-S0001. Stop recording and change the region?"_qs;
    const auto draw = [this] {
        QTest::keyClick(&window(), Qt::Key_D, Qt::ControlModifier);
        const QPoint centre = page().view().rect().center();
        drag(centre, centre + QPoint(60, 60));
        EXPECT_EQ(page().view().tool(), PImageView::Tool::Move);
    };
    const auto width = [this] { return int(inFront().frame().image.width()); };
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    declineNext(question);
    draw();
    declineNext(question);
    widget<QAction>(u"wholeSensor"_qs).trigger();
    const int before = written();
    ASSERT_TRUE(waitUntil([&] { return written() > before; }));
    EXPECT_EQ(width(), 320);
    answerNext(QMessageBox::Yes);
    draw();
    ASSERT_TRUE(waitForText(u"ended early"_qs)) << text().toStdString();
    ASSERT_TRUE(waitUntil([&] { return width() < 320; }));
    unasked([this] { widget<QAction>(u"wholeSensor"_qs).trigger(); });
    EXPECT_TRUE(waitUntil([&] { return width() == 320; }));
}

TEST_F(RecordSessionTest, the_binning_changes_only_if_the_user_gives_up_the_recording) {
    auto* const binning = setting<QComboBox>(u"Binning"_qs);
    ASSERT_NE(binning, nullptr);
    startRecording();
    declineNext(u"Recording in progress: Small-S0001. Stop recording and change the binning?"_qs);
    press(*binning, Qt::Key_Down);
    EXPECT_EQ(binning->currentText(), u"No binning"_qs);
    const int before = written();
    ASSERT_TRUE(waitUntil([&] { return written() > before; }));
    EXPECT_EQ(inFront().frame().image.width(), 320u);
    answerNext(QMessageBox::Yes);
    press(*binning, Qt::Key_Down);
    EXPECT_EQ(binning->currentText(), u"Add 2x2"_qs);
    ASSERT_TRUE(waitForText(u"ended early"_qs)) << text().toStdString();
    EXPECT_TRUE(text().contains(u"the frames get another size"_qs)) << text().toStdString();
    ASSERT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 160; }));
    unasked([&] { press(*binning, Qt::Key_Up); });
    EXPECT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 320; }));
}

TEST_F(RecordSessionTest, a_quarter_turn_needs_the_users_consent_and_a_half_does_not) {
    auto* const rotation = setting<QComboBox>(u"Rotate"_qs);
    ASSERT_NE(rotation, nullptr);
    startRecording();
    declineNext(u"Recording in progress: Small-S0001. Stop recording and rotate the picture?"_qs);
    press(*rotation, Qt::Key_Down);
    EXPECT_EQ(rotation->currentText(), u"0°"_qs);
    unasked([&] { choose(*rotation, u"180°"_qs); });
    EXPECT_EQ(rotation->currentText(), u"180°"_qs);
    const int before = written();
    ASSERT_TRUE(waitUntil([&] { return written() > before + 3; }));
    EXPECT_TRUE(isRecording());
    answerNext(QMessageBox::Yes);
    press(*rotation, Qt::Key_Down);
    ASSERT_TRUE(waitForText(u"the frames get another size"_qs)) << text().toStdString();
    EXPECT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 240; }));
}

TEST_F(RecordSessionTest, the_numbers_of_a_region_change_only_if_the_user_gives_up_the_recording) {
    auto* const width = setting<PNumberField>(u"ROI: Width"_qs);
    ASSERT_NE(width, nullptr);
    startRecording();
    declineNext(u"Recording in progress: Small-S0001. Stop recording and change the region?"_qs);
    enter(width, u"160"_qs);
    QCoreApplication::processEvents();
    EXPECT_EQ(width->value(), 320);
    EXPECT_TRUE(isRecording());
    answerNext(QMessageBox::Yes);
    enter(width, u"160"_qs);
    EXPECT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 160; }));
    EXPECT_TRUE(waitForText(u"the frames get another size"_qs)) << text().toStdString();
}

TEST_F(RecordSessionTest, other_settings_change_unasked_while_recording) {
    auto* const contrast = setting<PNumberField>(u"Contrast"_qs);
    ASSERT_NE(contrast, nullptr);
    startRecording();
    unasked([&] {
        enter(contrast, u"20"_qs);
        QCoreApplication::processEvents();
    });
    EXPECT_EQ(inFront().device()->getProperty("contrast")->tryGetValue(), QVariant(20));
    const int before = written();
    EXPECT_TRUE(waitUntil([&] { return written() > before + 3; }));
}

TEST_F(RecordSessionTest, a_binning_stays_if_the_recording_ends_during_the_question) {
    auto* const binning = setting<QComboBox>(u"Binning"_qs);
    ASSERT_NE(binning, nullptr);
    startRecording();
    expectNextClosesAfter([this] { widget<QPushButton>(u"recordButton"_qs).click(); });
    press(*binning, Qt::Key_Down);
    ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    EXPECT_EQ(binning->currentText(), u"No binning"_qs);
}

TEST_F(RecordSessionTest, a_camera_may_be_unplugged_during_the_question_about_a_setting) {
    auto* const binning = setting<QComboBox>(u"Binning"_qs);
    ASSERT_NE(binning, nullptr);
    startRecording();
    expectNextClosesAfter([] { EXPECT_TRUE(unplug("cam-1")); });
    press(*binning, Qt::Key_Down);
    ASSERT_TRUE(waitForText(u"unplugged"_qs)) << text().toStdString();
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().device() != nullptr; }));
    ASSERT_TRUE(waitForNewFrames());
    EXPECT_EQ(inFront().frame().image.width(), 320u);
}

TEST_F(RecordSessionTest,
       a_profile_of_other_frames_is_loaded_only_if_the_user_gives_up_the_recording) {
    const QString file = path(u"a.json"_qs);
    PDeviceProperty* const contrast = inFront().device()->getProperty("contrast");
    contrast->setValue(20);
    ASSERT_TRUE(PDeviceProfileFile::save(*inFront().device(), file).isOk());
    contrast->setValue(0);
    startRecording();
    unasked([&] { load(file); }); // which changes the contrast only
    EXPECT_EQ(contrast->valueInner(), QVariant(20));
    contrast->setValue(0);
    endRecording();

    ASSERT_TRUE(inFront().setMode(inFront().device()->getSupportModes().at(1)).isOk());
    ASSERT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 160; }));
    startRecording();
    const QString question =
        u"Recording in progress: Small-S0001. Stop recording and load the profile?"_qs;
    declineNext(question);
    load(file);
    EXPECT_EQ(contrast->valueInner(), QVariant(0));
    EXPECT_TRUE(isRecording());
    answerNext(QMessageBox::Yes);
    load(file);
    EXPECT_EQ(contrast->valueInner(), QVariant(20));
    ASSERT_TRUE(waitForText(u"the frames get another size"_qs)) << text().toStdString();
    EXPECT_TRUE(waitUntil([this] { return inFront().frame().image.width() == 320; }));
}

TEST_F(RecordSessionTest, what_needs_the_live_picture_says_so_while_it_is_stopped) {
    auto& still = widget<QAction>(u"snapshot"_qs);
    auto& record = widget<QAction>(u"record"_qs);
    auto& button = widget<QPushButton>(u"recordButton"_qs);
    const QStringList before{still.toolTip(), record.toolTip(), button.toolTip()};
    pressLiveKey();
    const QString reason = u"Not now: the live picture is stopped; start it first"_qs;
    EXPECT_FALSE(still.isEnabled() || record.isEnabled() || button.isEnabled());
    EXPECT_EQ(still.toolTip(),
              u"Take a still and save it in the capture folder (Ctrl+S)\n"_qs + reason);
    EXPECT_TRUE(record.toolTip().endsWith(reason)) << record.toolTip().toStdString();
    EXPECT_EQ(button.toolTip(), reason);
    pressLiveKey();
    EXPECT_TRUE(still.isEnabled() && record.isEnabled() && button.isEnabled());
    EXPECT_EQ(QStringList({still.toolTip(), record.toolTip(), button.toolTip()}), before);
}

TEST_F(RecordSessionTest, closing_its_tab_asks_and_then_leaves_a_whole_file) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    answerNext(QMessageBox::No);
    widget<QAction>(u"closeCamera"_qs).trigger();
    EXPECT_TRUE(isRecording());
    answerNext(QMessageBox::Yes);
    widget<QAction>(u"closeCamera"_qs).trigger();
    EXPECT_EQ(cameraTabs().currentPage(), nullptr);
    ASSERT_TRUE(waitForText(u"the camera was closed"_qs)) << text().toStdString();
    const OmeXml document(TiffReadBack(recorded()).description());
    EXPECT_FALSE(document.note(u"Camera frames delivered"_qs).isEmpty());
}

TEST_F(RecordSessionTest, enter_and_escape_on_the_question_keep_the_recording) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(isRecording());
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        pressNext(key);
        widget<QAction>(u"closeCamera"_qs).trigger();
        ASSERT_TRUE(isRecording()) << key;
        pressNext(key);
        window().close();
        ASSERT_TRUE(isRecording()) << key;
        EXPECT_TRUE(window().isVisible());
    }
    pressButton();
    EXPECT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
}

TEST_F(RecordSessionTest, closing_names_the_cameras_whose_recordings_it_would_end) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    declineNext(u"Recording in progress: Small-S0001. Stop recording and close?"_qs);
    window().close();
    EXPECT_TRUE(window().isVisible());
    activate();
    pressKeyUnasked(); // also records the second one
    ASSERT_TRUE(waitUntil([this] { return written("Small-S0002") >= 1; }));
    declineNext(u"Recording in progress: Small-S0001, Small-S0002. Stop recording and close?"_qs);
    window().close();
    EXPECT_TRUE(window().isVisible());
    declineNext(u"Recording in progress: Small-S0002. Stop recording and close?"_qs);
    widget<QAction>(u"closeCamera"_qs).trigger();
    EXPECT_EQ(cameraTabs().pages().size(), 2);
}

TEST_F(RecordSessionTest, closing_without_a_question_completes_the_file) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    window().closeUnasked();
    EXPECT_FALSE(window().isVisible());
    end();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
    const QByteArray file = readFile(recorded());
    EXPECT_TRUE(file.contains("the program was closed"));
}

TEST_F(RecordSessionTest,
       a_signal_while_the_question_is_open_closes_the_window_and_keeps_its_layout) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    const QSettings settings;
    EXPECT_FALSE(settings.contains(u"window/geometry"_qs));
    withNext([this](QMessageBox& question) {
        window().closeUnasked();
        question.reject(); // as all event loops end
    });
    window().close();
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(settings.contains(u"window/geometry"_qs));
}

TEST_F(RecordSessionTest, a_folder_with_the_number_sign_gets_its_series) {
    PCaptureFolder::setPath(captureFolder() + u"/slide#3"_qs);
    widget<QSpinBox>(u"recordFrames"_qs).setValue(3);
    widget<QComboBox>(u"recordFormat"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitForText(u"Recorded 3 frames"_qs)) << text().toStdString();
    const QDir folder(captureFolder() + u"/slide#3"_qs);
    const QStringList series = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(series.size(), 1);
    EXPECT_EQ(QDir(folder.filePath(series.first())).entryList(QDir::Files).size(), 3);
}

TEST_F(RecordSessionTest, a_file_that_is_removed_meanwhile_is_not_called_recorded) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    EXPECT_TRUE(text().contains(u"Small-S0001"_qs)) << text().toStdString();
    ASSERT_TRUE(QFile::remove(recorded()));
    pressButton();
    ASSERT_TRUE(waitForText(u"the file was removed"_qs)) << text().toStdString();
}

TEST_F(RecordSessionTest, a_folder_that_cannot_be_made_is_reported_in_the_panel) {
    writeFile(path(u"file"_qs), "x");
    PCaptureFolder::setPath(path(u"file/folder"_qs));
    pressButton();
    EXPECT_FALSE(isRecording());
    EXPECT_TRUE(text().contains(u"Recording not started"_qs)) << text().toStdString();
}

TEST_F(RecordSessionTest, the_key_asks_before_it_stops_one) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressKey();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    answerNext(QMessageBox::No);
    pressKey();
    EXPECT_TRUE(isRecording());
    activate();
    pressNext(Qt::Key_Return);
    pressKey();
    EXPECT_TRUE(isRecording());
    const int before = written();
    ASSERT_TRUE(waitUntil([&] { return written() > before; }));
    answerNext(QMessageBox::Yes);
    pressKey();
    ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), before);
}

TEST_F(RecordSessionTest, the_question_about_a_recording_closes_when_that_ends) {
    widget<QSpinBox>(u"recordFrames"_qs).setValue(10);
    pressKey();
    expectNextClosesAfter([] {});
    pressKey();
    ASSERT_TRUE(waitForText(u"Recorded 10 frames"_qs)) << text().toStdString();
}

TEST_F(RecordSessionTest, the_question_about_a_recording_closes_when_its_camera_is_unplugged) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressKey();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    expectNextClosesAfter([] { EXPECT_TRUE(unplug("cam-1")); });
    pressKey();
    ASSERT_TRUE(waitForText(u"unplugged"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
}

TEST_F(RecordSessionTest, the_question_about_a_recording_stays_when_another_one_ends) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    pressKeyUnasked();
    ASSERT_TRUE(waitUntil([this] { return written("Small-S0002") >= 5; }));
    withNext([this](QMessageBox& box) {
        const QPointer<QWidget> question(&box);
        EXPECT_TRUE(unplug("cam-1"));
        EXPECT_TRUE(waitUntil([this] { return text().contains(u"unplugged"_qs); }));
        const int before = written("Small-S0002");
        EXPECT_TRUE(waitUntil([&] { return written("Small-S0002") > before; }));
        ASSERT_TRUE(question != nullptr && question->isVisible());
        QTest::keyClick(question, Qt::Key_Escape);
    });
    pressKey();
    EXPECT_TRUE(isRecording());
}

TEST_F(RecordSessionTest, the_key_in_another_tab_leaves_a_recording_alone) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    EXPECT_FALSE(isRecording());
    pressKeyUnasked(); // starts recording this camera
    EXPECT_TRUE(isRecording());
    ASSERT_TRUE(waitUntil([this] { return written("Small-S0002") >= 5; })) << text().toStdString();
    const int before = written("Small-S0001");
    EXPECT_TRUE(waitUntil([&] { return written("Small-S0001") > before; }));

    answerNext(QMessageBox::Yes);
    pressKey();
    ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    const int later = written("Small-S0001");
    EXPECT_TRUE(waitUntil([&] { return written("Small-S0001") > later; }));
    ASSERT_TRUE(cameraTabs().open(u"Small-S0001"_qs).isOk());
    EXPECT_TRUE(isRecording());
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return !isRecording(); }));
    for (const QString& camera : {u"Small-S0001"_qs, u"Small-S0002"_qs}) {
        ASSERT_EQ(recordedFiles(camera).size(), 1) << camera.toStdString();
        EXPECT_TRUE(isWhole(recordedFiles(camera).first())) << camera.toStdString();
    }
}

TEST_F(RecordSessionTest, tabs_and_list_show_which_cameras_are_recorded) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    const auto& tabs = widget<QTabBar>(u"tabs"_qs);
    const auto& list = widget<QListWidget>(u"cameras"_qs);
    ASSERT_EQ(tabs.count(), 2);
    ASSERT_EQ(list.count(), 2);
    EXPECT_TRUE(tabs.tabText(0).startsWith(u"●"_qs));
    EXPECT_FALSE(tabs.tabText(1).contains(u"●"_qs));
    EXPECT_TRUE(list.item(0)->text().contains(u"recording"_qs));
    EXPECT_FALSE(list.item(1)->text().contains(u"recording"_qs));
    ASSERT_TRUE(cameraTabs().open(u"Small-S0001"_qs).isOk());
    pressButton();
    EXPECT_TRUE(waitUntil([&] { return !tabs.tabText(0).contains(u"●"_qs); }));
    EXPECT_FALSE(list.item(0)->text().contains(u"recording"_qs));
}

TEST_F(RecordSessionTest, unplugging_one_camera_ends_its_recording_alone) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    pressKeyUnasked();
    ASSERT_TRUE(waitUntil([this] { return written("Small-S0002") >= 5; }));
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return text().contains(u"unplugged"_qs); }));
    EXPECT_TRUE(isRecording());
    const auto& tabs = widget<QTabBar>(u"tabs"_qs);
    EXPECT_FALSE(tabs.tabText(0).contains(u"●"_qs));
    EXPECT_TRUE(tabs.tabText(1).contains(u"●"_qs));
    const int before = written("Small-S0002");
    EXPECT_TRUE(waitUntil([&] { return written("Small-S0002") > before; }));
    ASSERT_EQ(recordedFiles(u"Small-S0001"_qs).size(), 1);
    EXPECT_TRUE(isWhole(recordedFiles(u"Small-S0001"_qs).first()));
}

TEST_F(RecordSessionTest, closing_a_tab_that_is_not_recorded_leaves_the_others_alone) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    unasked([this] { widget<QAction>(u"closeCamera"_qs).trigger(); });
    ASSERT_EQ(cameraTabs().pages().size(), 1);
    EXPECT_TRUE(isRecording());
    const int before = written();
    EXPECT_TRUE(waitUntil([&] { return written() > before; }));
}

TEST_F(RecordSessionTest, closing_a_tab_ends_the_recording_of_its_camera_alone) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    pressKeyUnasked();
    ASSERT_TRUE(waitUntil([this] { return written("Small-S0002") >= 5; }));
    answerNext(QMessageBox::Yes);
    widget<QAction>(u"closeCamera"_qs).trigger();
    ASSERT_TRUE(waitUntil([this] { return text().contains(u"the camera was closed"_qs); }));
    ASSERT_EQ(recordedFiles(u"Small-S0002"_qs).size(), 1);
    EXPECT_TRUE(isWhole(recordedFiles(u"Small-S0002"_qs).first()));
    EXPECT_TRUE(hasLedger(recordedFiles(u"Small-S0002"_qs).first()));
    EXPECT_TRUE(isRecording()); // the other is in front now
    const int before = written("Small-S0001");
    EXPECT_TRUE(waitUntil([&] { return written("Small-S0001") > before; }));
}

TEST_F(RecordSessionTest, closing_the_window_completes_the_files_of_all) {
    ASSERT_NO_FATAL_FAILURE(recordFirstOfTwo());
    answerNext(QMessageBox::No); // even if another camera is in front
    window().close();
    ASSERT_TRUE(window().isVisible());
    activate();
    pressKeyUnasked();
    ASSERT_TRUE(waitUntil([this] { return written("Small-S0002") >= 5; }));
    answerNext(QMessageBox::Yes);
    window().close();
    EXPECT_FALSE(window().isVisible());
    end();
    for (const QString& camera : {u"Small-S0001"_qs, u"Small-S0002"_qs}) {
        ASSERT_EQ(recordedFiles(camera).size(), 1) << camera.toStdString();
        EXPECT_TRUE(isWhole(recordedFiles(camera).first())) << camera.toStdString();
        EXPECT_TRUE(hasLedger(recordedFiles(camera).first())) << camera.toStdString();
    }
}
