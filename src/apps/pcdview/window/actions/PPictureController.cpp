// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PPictureController.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/options/PViewLog.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/dialogs/PCaptureDialog.h>

#include <QAction>
#include <QFileDialog>
#include <QMessageBox>

PPictureController::PPictureController(const PViewActions& actions, PCameraTabs& tabs,
                                       QWidget* window)
    : QObject(window)
    , m_tabs(tabs)
    , m_window(window) {
    connect(actions.snapshot, &QAction::triggered, this,
            [this] { m_capture.takeStill(m_tabs.currentPage()->camera()); });
    connect(actions.savePicture, &QAction::triggered, this, &PPictureController::saveShown);
    connect(actions.captureFiles, &QAction::triggered, this, &PPictureController::chooseFiles);
    connect(&tabs, &PCameraTabs::pageAdded, this, [this](PCameraPage* page) {
        m_capture.follow(&page->camera(), [page] { return page->pixelSizeOfPicture(); });
    });
    connect(&m_capture, &PCapture::unsavedChanged, this, &PPictureController::unsavedChanged);
    connect(&m_capture, &PCapture::messageChanged, this, &PPictureController::messageChanged);
    connect(&m_capture, &PCapture::saveFailed, this, &PPictureController::showFailure);
}

void PPictureController::saveShown() {
    const PCameraPage* const page = m_tabs.currentPage();
    const PViewCamera& camera = page->camera();
    // The picture that was on the screen, not one that arrives while the dialog is open.
    const PDeviceFrame frame = camera.frame();
    const double pixelSize = page->pixelSizeOfPicture();
    if (frame.image.isNull()) {
        emit messageChanged(tr("There is no picture yet."));
        return;
    }
    QFileDialog dialog(m_window, tr("Save displayed picture"), QString(),
                       tr("PNG (*.png);;TIFF (*.tif *.tiff)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"png"_qs);
    dialog.selectFile(
        PCaptureFolder::nextPath(camera.identity().id, QDateTime::currentDateTime(), u".png"_qs));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = dialog.selectedFiles().value(0);
    const PStatus name = PPictureFile::checkName(path);
    if (name.isOk())
        m_capture.saveFrame(camera.identity(), frame, pixelSize, path);
    else
        emit messageChanged(name.reason());
}

bool PPictureController::finishSaving() {
    return confirmsLoss() && waitForFiles();
}

/// The question closes when the stills have arrived, which are then saved, or when one cannot come
/// any more, which the user reads in the window.
bool PPictureController::confirmsLoss() {
    if (m_capture.awaited() == 0)
        return true;
    QMessageBox question(QMessageBox::Question, tr("Still pictures"), {},
                         QMessageBox::Yes | QMessageBox::No, m_window);
    question.setDefaultButton(QMessageBox::No);
    const auto show = [&](int stills) {
        question.setText(
            tr("Still pictures that have not arrived yet: %1. Close without them?").arg(stills));
        if (stills == 0 && question.isVisible())
            question.done(QMessageBox::Yes);
    };
    connect(&m_capture, &PCapture::saveFailed, &question, &QDialog::reject);
    connect(&m_capture, &PCapture::awaitedChanged, &question, show);
    show(m_capture.awaited());
    return question.exec() == QMessageBox::Yes;
}

bool PPictureController::waitForFiles() {
    if (m_capture.unsaved() == 0)
        return true;
    QMessageBox box(QMessageBox::Information, tr("Saving pictures"), {}, QMessageBox::Cancel,
                    m_window);
    QString failure;
    connect(&m_capture, &PCapture::saveFailed, &box, [&](const QString& why) { failure = why; });
    const auto show = [&](int pictures) {
        box.setText(tr("Pictures still to be saved: %1. After the last one, the window closes.")
                        .arg(pictures));
        // The last picture may be saved right after the user has cancelled: then the window stays.
        if (pictures == 0 && box.isVisible())
            box.accept();
    };
    connect(this, &PPictureController::unsavedChanged, &box, show);
    show(m_capture.unsaved());
    const bool isFinished = box.exec() == QDialog::Accepted;
    if (isFinished && !failure.isEmpty())
        emit messageChanged(failure); // why the window stays, and not that a later one was saved
    return isFinished && failure.isEmpty();
}

void PPictureController::chooseFiles() {
    const PCameraPage* const page = m_tabs.currentPage();
    PCaptureDialog(page == nullptr ? tr("Camera") : page->camera().identity().id, m_window).exec();
}

/// The next message replaces the one in the status bar; the log keeps both.
void PPictureController::showFailure(const QString& reason) {
    emit messageChanged(reason);
    PViewLog::warning(reason);
}

#include "moc_PPictureController.cpp"
