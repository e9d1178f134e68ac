// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PPictureController.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/ViewPictures.h>

#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/dialogs/PCaptureDialog.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

namespace {

/// The texts of the message boxes that are shown, and their dismissal.
class ShownMessages : public QObject {
public:
    ShownMessages() { qApp->installEventFilter(this); }

    QStringList texts;
    bool areDismissed = false; ///< closed before the results of other threads arrive

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        const auto* const box = qobject_cast<QMessageBox*>(object);
        if (box == nullptr || event->type() != QEvent::Show)
            return false;
        texts.append(box->text());
        if (areDismissed)
            QCoreApplication::postEvent(object, new QCloseEvent, Qt::HighEventPriority);
        return false;
    }
};

class PPictureControllerTest : public FakeCameras {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs)); }

    /// Makes the first camera deliver a still.
    void takeStill() {
        PDeviceFrame frame;
        frame.image =
            makePicture(40, 30, PDIP::ColorFormat::Bgr, [](int, int) { return QColor(Qt::red); });
        first->processSnapshot(frame);
    }
    bool waitForMessage(const QString& part) {
        return waitUntil([&] { return lastMessage(messages).contains(part); });
    }
    /// Saves the displayed picture through the dialog, under this name.
    void saveShownAs(const QString& path) {
        QTimer::singleShot(0, &window, [path] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            auto* const name = dialog->findChild<QLineEdit*>(u"fileNameEdit"_qs);
            ASSERT_NE(name, nullptr);
            name->setText(path);
            static_cast<QDialog*>(dialog)->accept();
        });
        actions.savePicture->trigger();
    }

    /// A still arrives, without the event loop, which would also report that others are saved.
    void receiveStill() {
        PDeviceFrame frame;
        frame.image = halves(Qt::red, Qt::blue);
        emit tabs->currentPage()->camera().snapshotTaken(frame);
    }

    PPictureController* const controller =
        new PPictureController(actions, *tabs, &window); // the window's
    const QSignalSpy messages{controller, &PPictureController::messageChanged};
};

} // namespace

TEST_F(PPictureControllerTest, saves_a_still_picture_in_the_capture_folder) {
    takeStill();
    ASSERT_TRUE(waitForMessage(u"Saved "_qs)) << lastMessage(messages).toStdString();
    const QStringList files = QDir(captureFolder()).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(QImage(QDir(captureFolder()).filePath(files.first())).size(), QSize(40, 30));
}

TEST_F(PPictureControllerTest, logs_a_picture_that_could_not_be_saved) {
    writeFile(path(u"file"_qs), "x");
    PCaptureFolder::setPath(path(u"file/folder"_qs));
    const PLogCapture log;
    takeStill();
    ASSERT_TRUE(waitUntil([this] { return !messages.isEmpty(); }));
    const QString message = lastMessage(messages);
    EXPECT_TRUE(message.contains(u"file/folder"_qs)) << message.toStdString();
    EXPECT_TRUE(log.contains(message)) << message.toStdString();
}

TEST_F(PPictureControllerTest, reports_why_there_is_no_still_picture) {
    actions.snapshot->trigger();
    EXPECT_TRUE(lastMessage(messages).startsWith(u"No still taken: "_qs))
        << lastMessage(messages).toStdString();
}

TEST_F(PPictureControllerTest, saves_the_picture_that_is_shown_under_the_name_chosen) {
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves(Qt::red, Qt::red)));
    ASSERT_NO_FATAL_FAILURE(saveShownAs(path(u"shown.png"_qs)));
    ASSERT_TRUE(waitForMessage(u"Saved shown.png"_qs)) << lastMessage(messages).toStdString();
    EXPECT_EQ(QImage(path(u"shown.png"_qs)).pixelColor(1, 1), QColor(Qt::red));
}

TEST_F(PPictureControllerTest, reports_a_name_whose_format_is_not_known) {
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves(Qt::red, Qt::red)));
    ASSERT_NO_FATAL_FAILURE(saveShownAs(path(u"shown.gif"_qs)));
    EXPECT_TRUE(lastMessage(messages).contains(u".gif"_qs)) << lastMessage(messages).toStdString();
    EXPECT_FALSE(QFile::exists(path(u"shown.gif"_qs)));
}

TEST_F(PPictureControllerTest, says_that_there_is_no_picture_to_save_yet) {
    actions.savePicture->trigger();
    EXPECT_EQ(lastMessage(messages), u"There is no picture yet."_qs);
}

TEST_F(PPictureControllerTest, opens_the_dialog_for_names_with_the_camera_in_front) {
    QString example;
    QTimer::singleShot(0, &window, [&] {
        auto* const dialog = qobject_cast<PCaptureDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        example = dialog->findChild<QLabel*>(u"captureExample"_qs)->text();
        dialog->reject();
    });
    actions.captureFiles->trigger();
    EXPECT_TRUE(example.contains(u"Fake-1"_qs)) << example.toStdString();
}

TEST_F(PPictureControllerTest, has_nothing_to_finish_where_nothing_is_being_saved) {
    EXPECT_TRUE(controller->finishSaving());
}

TEST_F(PPictureControllerTest, waits_for_the_pictures_and_says_how_many_there_are) {
    const ShownMessages shown;
    for (int i = 0; i < 3; ++i)
        receiveStill();
    EXPECT_TRUE(controller->finishSaving());
    EXPECT_EQ(
        shown.texts,
        QStringList(u"Pictures still to be saved: 3. After the last one, the window closes."_qs));
    EXPECT_EQ(QDir(captureFolder()).entryList(QDir::Files).size(), 3);
}

TEST_F(PPictureControllerTest, waits_for_no_pictures_if_the_user_does_not_want_to) {
    ShownMessages shown;
    shown.areDismissed = true;
    receiveStill();
    EXPECT_FALSE(controller->finishSaving());
    EXPECT_TRUE(waitForMessage(u"Saved "_qs)); // but it is saved
}

TEST_F(PPictureControllerTest, is_not_done_with_a_picture_that_could_not_be_saved) {
    writeFile(path(u"file"_qs), "x");
    PCaptureFolder::setPath(path(u"file/folder"_qs));
    receiveStill();
    EXPECT_FALSE(controller->finishSaving());
}

TEST_F(PPictureControllerTest,
       says_in_the_end_which_picture_was_not_saved_and_not_that_others_were) {
    writeFile(path(u"file"_qs), "x");
    PCaptureFolder::setPath(path(u"file/folder"_qs));
    receiveStill();
    PCaptureFolder::setPath(captureFolder());
    receiveStill();
    EXPECT_FALSE(controller->finishSaving());
    EXPECT_EQ(QDir(captureFolder()).entryList(QDir::Files).size(), 1);
    EXPECT_TRUE(lastMessage(messages).contains(path(u"file/folder"_qs)))
        << lastMessage(messages).toStdString();
}
