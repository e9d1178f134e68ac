// SPDX-License-Identifier: MIT
// Triggered runs in the viewer as the user does them, with a simulated camera.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/common/camera/PCaptureMode.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <support/QtPrinters.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QSpinBox>
#include <QTest>
#include <QTreeWidget>

#include <thread>

namespace {

class RunSessionTest : public ViewSession {
protected:
    void SetUp() override {
        start({triggeredCamera()});
        ASSERT_TRUE(waitForNewFrames());
        beginTriggered();
        widget<QSpinBox>(u"sMS"_qs).setValue(9);
        widget<QSpinBox>(u"sSec"_qs).setValue(0);
    }

    static QJsonObject triggeredCamera() {
        QJsonObject triggered = camera();
        triggered.insert(u"flags"_qs, QJsonArray{u"TRIGGER_SOFTWARE"_qs, u"TRIGGER_EXTERNAL"_qs});
        return triggered;
    }
    /// Begins triggered capture after the last live frame was delivered, as a run could take it for
    /// one of its own.
    void beginTriggered() {
        pressLive();
        ASSERT_TRUE(waitUntil([this] { return inFront().ledger().waiting == 0; }));
        click("pbTrigger");
        pressLive();
        ASSERT_EQ(inFront().state(), PViewCamera::State::Live);
    }
    /// Stops the run and returns the number of frames that the camera has made by then. Stopping
    /// the stream waits for the one that it is about to send.
    quint64 endRun(const char* button) {
        click(button);
        pressLive();
        const quint64 frames = inFront().ledger().produced;
        pressLive();
        return frames;
    }
    void pressLive() { QTest::keyClick(&window(), Qt::Key_L, Qt::ControlModifier); }

    void click(const char* button) {
        QTest::mouseClick(&widget<QAbstractButton>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    /// The line above the picture of the camera in front.
    QString banner() {
        const auto* const label = page().findChild<QLabel*>(u"banner"_qs);
        return label == nullptr ? QString() : label->text();
    }
    bool saysWaiting() { return banner().contains(u"waiting for triggers"_qs); }
    bool saysRun() { return banner().contains(u"run in progress"_qs); }
    /// The number of pictures taken that the panel "Frames" shows.
    int picturesCounted() {
        const auto& table = widget<QTreeWidget>(u"frames"_qs);
        const auto rows = table.findItems(u"Pictures taken"_qs, Qt::MatchExactly);
        return rows.size() == 1 ? rows.first()->text(1).toInt() : -1;
    }
    qsizetype files() const { return QDir(captureFolder()).entryList({u"*.png"_qs}).size(); }
    /// Counts them after the program has ended, when nothing waits to be saved any more.
    qsizetype filesInTheEnd() {
        end();
        return files();
    }
    /// Blocks this thread until this number of frames waits for it.
    bool holdUpUntilWaiting(quint64 frames) {
        for (int ms = 0; inFront().ledger().waiting < frames && ms < 20'000; ++ms)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return inFront().ledger().waiting >= frames;
    }
};

} // namespace

TEST_F(RunSessionTest, a_repeated_run_is_saved_and_the_live_picture_after_it_is_not) {
    const quint64 before = inFront().ledger().produced;
    click("pbRepeatMode");
    ASSERT_TRUE(waitUntil([this] { return files() >= 3; }));
    ASSERT_TRUE(holdUpUntilWaiting(2));
    const quint64 ofRun = endRun("pbRepeatMode") - before;
    ASSERT_GE(inFront().ledger().waiting, 2U); // still in delivery
    click("pbVideo");
    // The panel keeps forwarding the frames that arrive.
    ASSERT_TRUE(waitUntil([&] { return inFront().ledger().snapshots >= ofRun + 10; }));
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier);
    // Live frames that wait for the window come before the still.
    ASSERT_TRUE(waitUntil([&] { return picturesCounted() >= int(ofRun) + 1; }));
    const quint64 forwarded = inFront().ledger().snapshots;
    ASSERT_TRUE(waitUntil([&] { return inFront().ledger().snapshots >= forwarded + 10; }));
    EXPECT_EQ(quint64(filesInTheEnd()), ofRun + 1); // and the still
}

TEST_F(RunSessionTest, the_frames_panel_counts_the_pictures_taken_and_none_that_is_only_forwarded) {
    const quint64 before = inFront().ledger().produced;
    click("pbRepeatMode");
    ASSERT_TRUE(waitUntil([this] { return picturesCounted() >= 1; }));
    const auto ofRun = int(endRun("pbRepeatMode") - before);
    click("pbVideo");
    ASSERT_TRUE(waitUntil([&] { return inFront().ledger().snapshots >= quint64(ofRun) + 10; }));
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return picturesCounted() == ofRun + 1; })) << picturesCounted();
    const quint64 forwarded = inFront().ledger().snapshots;
    ASSERT_TRUE(waitUntil([&] { return inFront().ledger().snapshots >= forwarded + 10; }));
    pressLive(); // and shows the current state
    EXPECT_EQ(picturesCounted(), ofRun + 1);
    EXPECT_EQ(filesInTheEnd(), ofRun + 1);
}

TEST_F(RunSessionTest, a_camera_that_comes_back_has_taken_no_pictures_yet) {
    click("pbRunOnce");
    ASSERT_TRUE(waitUntil([this] { return picturesCounted() == 1; }));
    const QPointer<PDevice> before = inFront().device();
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([&] { return before.isNull(); }));
    EXPECT_EQ(picturesCounted(), 1);
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
    EXPECT_TRUE(waitUntil([this] { return picturesCounted() == 0; })) << picturesCounted();
}

TEST_F(RunSessionTest, live_frames_that_arrive_while_the_run_is_left_are_not_saved) {
    const quint64 before = inFront().ledger().produced;
    click("pbRepeatMode");
    ASSERT_TRUE(waitUntil([this] { return files() >= 1; }));
    const quint64 ofRun = endRun("pbRepeatMode") - before;
    delay("Toupcam_put_ExpoAGain", 200); // several frames: it is the last of what is sent
    click("pbVideo");
    delay("Toupcam_put_ExpoAGain", 0);
    const quint64 arrived = inFront().ledger().produced - before;
    ASSERT_GT(arrived, ofRun);
    ASSERT_TRUE(waitUntil([&] { return inFront().ledger().snapshots >= arrived; }));
    EXPECT_EQ(quint64(filesInTheEnd()), ofRun);
}

TEST_F(RunSessionTest, a_run_after_a_repeated_one_is_saved_alone) {
    const quint64 before = inFront().ledger().produced;
    click("pbRepeatMode");
    ASSERT_TRUE(waitUntil([this] { return files() >= 1; }));
    const quint64 first = endRun("pbRepeatMode") - before;
    click("pbVideo");
    ASSERT_TRUE(waitForNewFrames());
    beginTriggered();
    widget<QSpinBox>(u"spincount"_qs).setValue(2);
    click("pbSequence");
    ASSERT_TRUE(waitUntil([this] { return inFront().triggeredPictures() >= 2; }));
    ASSERT_TRUE(
        waitUntil([this] { return !widget<QAbstractButton>(u"pbSequence"_qs).isChecked(); }));
    EXPECT_EQ(quint64(filesInTheEnd()), first + 2);
}

TEST_F(RunSessionTest, every_picture_of_a_sequence_is_counted_when_it_is_there) {
    widget<QSpinBox>(u"spincount"_qs).setValue(3);
    EXPECT_TRUE(banner().contains(u"Pictures taken: 0"_qs)) << banner().toStdString();
    click("pbSequence");
    EXPECT_TRUE(waitUntil([this] { return files() == 3; }));
    EXPECT_TRUE(banner().contains(u"Pictures taken: 3"_qs)) << banner().toStdString();
    EXPECT_EQ(filesInTheEnd(), 3);
}

TEST_F(RunSessionTest, the_camera_is_not_shown_as_waiting_while_a_run_is_in_progress) {
    widget<QSpinBox>(u"spincount"_qs).setValue(3);
    for (const char* button : {"pbRunOnce", "pbSequence", "pbRepeatMode"}) {
        EXPECT_TRUE(saysWaiting()) << button << banner().toStdString();
        click(button);
        EXPECT_TRUE(saysRun()) << button << banner().toStdString();
        EXPECT_FALSE(saysWaiting()) << button << banner().toStdString();
        const quint64 before = inFront().triggeredPictures();
        ASSERT_TRUE(waitUntil([&] { return inFront().triggeredPictures() > before; })) << button;
        if (widget<QAbstractButton>(QString::fromLatin1(button)).isChecked())
            click(button);
        ASSERT_TRUE(waitUntil([this] { return !saysRun(); })) << button;
    }
    EXPECT_TRUE(saysWaiting()) << banner().toStdString();
}

TEST_F(RunSessionTest,
       the_camera_is_shown_as_waiting_while_a_sequence_waits_for_external_triggers) {
    auto& source = widget<QComboBox>(u"cbTriggerMode"_qs);
    QTest::keyClick(&source, Qt::Key_Down);
    ASSERT_TRUE(PCaptureMode::isTriggeredFromOutside(*inFront().device()));
    click("pbSequence");
    ASSERT_TRUE(widget<QAbstractButton>(u"pbSequence"_qs).isChecked());
    EXPECT_TRUE(saysWaiting()) << banner().toStdString();
    EXPECT_FALSE(saysRun()) << banner().toStdString();
}

TEST_F(RunSessionTest, a_run_is_still_shown_as_in_progress_after_a_look_at_another_camera) {
    end();
    start({triggeredCamera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    beginTriggered();
    widget<QSpinBox>(u"sSec"_qs).setValue(1);
    click("pbRepeatMode");
    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    ASSERT_TRUE(waitForNewFrames());
    ASSERT_TRUE(cameraTabs().open(u"Small-S0001"_qs).isOk());
    EXPECT_TRUE(saysRun()) << banner().toStdString();
    EXPECT_FALSE(saysWaiting()) << banner().toStdString();
    click("pbRepeatMode");
    EXPECT_TRUE(saysWaiting()) << banner().toStdString();
}

TEST_F(RunSessionTest, a_run_goes_on_and_is_saved_while_another_camera_is_in_front) {
    end();
    start({triggeredCamera(), camera(u"cam-2"_qs, u"S0002"_qs)});
    ASSERT_TRUE(waitForNewFrames());
    beginTriggered();
    widget<QSpinBox>(u"sMS"_qs).setValue(9);
    widget<QSpinBox>(u"sSec"_qs).setValue(0);
    click("pbRepeatMode");
    ASSERT_TRUE(waitUntil([this] { return files() >= 1; }));

    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    ASSERT_TRUE(waitForNewFrames());
    const qsizetype before = files();
    EXPECT_TRUE(waitUntil([&] { return files() >= before + 3; }));

    ASSERT_TRUE(cameraTabs().open(u"Small-S0001"_qs).isOk());
    EXPECT_TRUE(widget<QAbstractButton>(u"pbRepeatMode"_qs).isChecked());
    EXPECT_EQ(widget<QAbstractButton>(u"pbRepeatMode"_qs).text(), u"Stop"_qs);
}

TEST_F(RunSessionTest, the_live_exposure_comes_back_with_a_camera_unplugged_during_a_run) {
    const auto plain = [this](const char* id) {
        return inFront().device()->getProperty(id)->valueInner();
    };
    click("pbVideo");
    inFront().device()->getProperty("autoexpottime")->setValue(7000);
    ASSERT_TRUE(waitForNewFrames());
    beginTriggered();
    widget<QSpinBox>(u"sSec"_qs).setValue(1);
    click("pbRepeatMode");
    ASSERT_TRUE(waitUntil([&] { return plain("autoexpottime").toInt() > 1'000'000; }));
    QTest::qWait(0); // settings are remembered in the next iteration of the event loop

    const QPointer<PDevice> before = inFront().device();
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitUntil([&] { return before.isNull(); }));
    ASSERT_TRUE(plug("cam-1"));
    ASSERT_TRUE(waitUntil([this] { return inFront().state() == PViewCamera::State::Live; }));
    EXPECT_EQ(plain("autoexpottime").toInt(), 7000);
    EXPECT_EQ(plain("autoexponeable").toBool(), false);
}
