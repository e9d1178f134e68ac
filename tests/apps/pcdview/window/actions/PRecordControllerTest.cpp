// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PRecordController.h>

#include <apps/pcdview/FakeGatedExposure.h>
#include <apps/pcdview/ViewPictures.h>
#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>

#include <PCd/FakeProperty.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

class PRecordControllerTest : public FakeCameras {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs)); }
    void TearDown() override { EXPECT_EQ(answersDue, 0) << "a question was not asked"; }

    /// Calls a function with the next question.
    void atNext(const std::function<void(const QPointer<QMessageBox>&)>& act) {
        ++answersDue;
        QTimer::singleShot(0, &window, [this, act] {
            const QPointer<QMessageBox> box =
                qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            --answersDue;
            act(box);
        });
    }
    /// Answers the next question, and stores its text in `question`.
    void answerNext(QMessageBox::StandardButton answer) {
        atNext([this, answer](const QPointer<QMessageBox>& box) {
            question = box->text();
            box->button(answer)->click();
        });
    }
    /// Waits for a question to close without an answer.
    static void expectClosing(const QPointer<QMessageBox>& box) {
        const auto isClosed = [&] { return box == nullptr || !box->isVisible(); };
        EXPECT_TRUE(waitUntil(isClosed));
        if (!isClosed())
            box->reject(); // nothing else would
    }
    bool isRecorded() const { return !recordings.running().isEmpty(); }

    QString question;
    int answersDue = 0;
    PRecordController* const controller =
        new PRecordController(actions.record, *tabs, panels, recordings, &window); // the window's
    const QSignalSpy messages{controller, &PRecordController::messageChanged};
};

/// The camera is being recorded, and its frames wait to be written until the gate opens.
class PRecordControllerFilesTest : public PRecordControllerTest {
protected:
    PRecordControllerFilesTest() {
        FakeGatedExposure exposure;
        exposure.gate = gate.get_future().share();
        first->makeProperties = [exposure] {
            return QList<PDeviceProperty*>{
                new FakeProperty("extexposure", QVariant::fromValue(exposure))};
        };
    }

    void SetUp() override {
        PRecordControllerTest::SetUp();
        actions.record->trigger();
        ASSERT_TRUE(isRecorded());
        first->processFrameImage(halves(Qt::gray, Qt::gray));
        first->processFrameImage(halves(Qt::gray, Qt::gray));
    }

    std::promise<void> gate; // destroyed first, which opens it: the recordings wait for their files
};

} // namespace

TEST_F(PRecordControllerTest, records_the_camera_in_front_into_the_capture_folder) {
    actions.record->trigger();
    ASSERT_TRUE(isRecorded());
    EXPECT_EQ(recordings.running().first()->cameraId(), u"Fake-1"_qs);
    EXPECT_TRUE(lastMessage(messages).startsWith(u"Recording to "_qs + captureFolder()));
}

TEST_F(PRecordControllerTest, starts_one_by_the_panel_too) {
    emit panels.record->startRequested();
    EXPECT_TRUE(isRecorded());
    EXPECT_TRUE(actions.record->isChecked());
}

TEST_F(PRecordControllerTest, says_in_bar_and_panel_why_none_was_started) {
    writeFile(path(u"file"_qs), "x");
    PCaptureFolder::setPath(path(u"file/folder"_qs));
    actions.record->trigger();
    EXPECT_FALSE(isRecorded());
    EXPECT_FALSE(actions.record->isChecked());
    EXPECT_TRUE(lastMessage(messages).startsWith(u"Recording not started: "_qs));
    const auto* const text = panels.record->findChild<QLabel*>(u"recordText"_qs);
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(text->text().remove(QChar(0x200b)).contains(lastMessage(messages)));
}

TEST_F(PRecordControllerTest, stops_one_only_after_the_user_has_confirmed_it) {
    actions.record->trigger();
    answerNext(QMessageBox::No);
    actions.record->trigger();
    EXPECT_EQ(question, u"Stop the recording of Fake-1?"_qs);
    EXPECT_TRUE(actions.record->isChecked());
    answerNext(QMessageBox::Yes);
    actions.record->trigger();
    ASSERT_TRUE(waitUntil([this] { return !isRecorded(); }));
    EXPECT_FALSE(actions.record->isChecked());
    EXPECT_TRUE(lastMessage(messages).startsWith(u"Fake-1: "_qs))
        << lastMessage(messages).toStdString();
}

TEST_F(PRecordControllerTest, checks_the_action_for_the_camera_in_front_alone) {
    actions.record->trigger();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    EXPECT_FALSE(actions.record->isChecked());
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    EXPECT_TRUE(actions.record->isChecked());
}

TEST_F(PRecordControllerTest, closes_without_a_question_what_is_not_recorded) {
    EXPECT_TRUE(controller->mayCloseWindow());
    EXPECT_TRUE(controller->endForClosing(*tabs->currentPage()));
}

TEST_F(PRecordControllerTest, ends_a_recording_with_its_tab_only_after_the_user_has_confirmed_it) {
    actions.record->trigger();
    answerNext(QMessageBox::No);
    EXPECT_FALSE(controller->endForClosing(*tabs->currentPage()));
    EXPECT_EQ(question, u"Recording in progress: Fake-1. Stop recording and close?"_qs);
    EXPECT_TRUE(isRecorded());
    answerNext(QMessageBox::Yes);
    EXPECT_TRUE(controller->endForClosing(*tabs->currentPage()));
    EXPECT_TRUE(waitUntil([this] { return !isRecorded(); }));
}

TEST_F(PRecordControllerTest, names_all_recordings_that_closing_the_window_would_end) {
    actions.record->trigger();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    actions.record->trigger();
    answerNext(QMessageBox::No);
    EXPECT_FALSE(controller->mayCloseWindow());
    EXPECT_EQ(question, u"Recording in progress: Fake-1, Fake-2. Stop recording and close?"_qs);
    answerNext(QMessageBox::Yes);
    EXPECT_TRUE(controller->mayCloseWindow());
    EXPECT_EQ(recordings.running().size(), 2); // until the window closes
}

TEST_F(PRecordControllerTest, the_question_before_closing_follows_the_recordings_that_end) {
    actions.record->trigger();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    actions.record->trigger();
    ASSERT_EQ(recordings.running().size(), 2);
    atNext([this](const QPointer<QMessageBox>& box) {
        recordings.running().first()->stop();
        EXPECT_TRUE(waitUntil([&] {
            return box->text() == u"Recording in progress: Fake-2. Stop recording and close?"_qs;
        })) << box->text().toStdString();
        recordings.running().last()->stop();
        expectClosing(box);
    });
    EXPECT_FALSE(controller->mayCloseWindow());
    EXPECT_TRUE(recordings.running().isEmpty());
}

TEST_F(PRecordControllerTest,
       closes_what_the_user_wants_closed_even_if_the_recording_ends_meanwhile) {
    actions.record->trigger();
    ASSERT_TRUE(isRecorded());
    atNext([this](const QPointer<QMessageBox>& box) {
        recordings.running().first()->stop();
        box->button(QMessageBox::Yes)->click();
        EXPECT_TRUE(waitUntil([this] { return !isRecorded(); }));
    });
    EXPECT_TRUE(controller->mayCloseWindow());
}

TEST_F(PRecordControllerFilesTest, shows_what_is_still_to_be_written_before_the_window_closes) {
    atNext([this](const QPointer<QMessageBox>& box) {
        question = box->text();
        gate.set_value();
        expectClosing(box);
    });
    EXPECT_TRUE(controller->finishFiles());
    EXPECT_EQ(question,
              u"Frames still to be written: 2. After the last one, the window closes."_qs);
    EXPECT_FALSE(isRecorded());
}

TEST_F(PRecordControllerFilesTest, keeps_the_window_if_the_user_does_not_wait_for_the_files) {
    answerNext(QMessageBox::Cancel);
    EXPECT_FALSE(controller->finishFiles());
    gate.set_value();
    EXPECT_TRUE(waitUntil([this] { return !isRecorded(); }));
}

TEST_F(PRecordControllerFilesTest, keeps_the_window_if_a_frame_could_not_be_written) {
    gate.set_value();
    first->processFrameImage(makePicture(8, 8, PDIP::ColorFormat::Bgr, // a file has one size
                                         [](int, int) { return QColor(Qt::gray); }));
    EXPECT_FALSE(controller->finishFiles());
}

TEST_F(PRecordControllerFilesTest, completes_files_without_a_message_if_that_takes_no_time) {
    gate.set_value();
    EXPECT_TRUE(controller->finishFiles()); // a message would have to be answered
    EXPECT_FALSE(isRecorded());
}
