// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PRecordController.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>

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

    /// Answers the next question, and stores its text in `question`.
    void answerNext(QMessageBox::StandardButton answer) {
        ++answersDue;
        QTimer::singleShot(0, &window, [this, answer] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            --answersDue;
            question = box->text();
            box->button(answer)->click();
        });
    }
    bool isRecorded() const { return !recordings.running().isEmpty(); }

    QString question;
    int answersDue = 0;
    PRecordController* const controller =
        new PRecordController(actions.record, *tabs, panels, recordings, &window); // the window's
    const QSignalSpy messages{controller, &PRecordController::messageChanged};
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
    ++answersDue;
    QTimer::singleShot(0, &window, [this] {
        const QPointer<QMessageBox> box =
            qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        --answersDue;
        recordings.running().first()->stop();
        EXPECT_TRUE(waitUntil([&] {
            return box->text() == u"Recording in progress: Fake-2. Stop recording and close?"_qs;
        })) << box->text().toStdString();
        recordings.running().last()->stop();
        EXPECT_TRUE(waitUntil([&] { return box == nullptr || !box->isVisible(); }));
        if (box != nullptr)
            box->reject(); // nothing else would
    });
    EXPECT_FALSE(controller->mayCloseWindow());
    EXPECT_TRUE(recordings.running().isEmpty());
}

TEST_F(PRecordControllerTest,
       closes_what_the_user_wants_closed_even_if_the_recording_ends_meanwhile) {
    actions.record->trigger();
    ASSERT_TRUE(isRecorded());
    ++answersDue;
    QTimer::singleShot(0, &window, [this] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        --answersDue;
        recordings.running().first()->stop();
        box->button(QMessageBox::Yes)->click();
        EXPECT_TRUE(waitUntil([this] { return !isRecorded(); }));
    });
    EXPECT_TRUE(controller->mayCloseWindow());
}
