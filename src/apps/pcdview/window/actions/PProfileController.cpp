// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PProfileController.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/dialogs/PProfileReportText.h>
#include <apps/pcdview/window/dialogs/PTextDialog.h>

#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <QAction>
#include <QFileDialog>
#include <QMessageBox>

PProfileController::PProfileController(const PViewActions& actions, PCameraTabs& tabs,
                                       QWidget* window)
    : QObject(window)
    , m_tabs(tabs)
    , m_window(window) {
    connect(actions.loadProfile, &QAction::triggered, this, &PProfileController::load);
    connect(actions.saveProfile, &QAction::triggered, this, &PProfileController::save);
}

void PProfileController::load() {
    const QString path = QFileDialog::getOpenFileName(
        m_window, tr("Load profile"), PCaptureFolder::path(), tr("Camera profiles (*.json)"));
    // It may have been unplugged while the dialog was open.
    if (!path.isEmpty() && m_tabs.currentPage()->camera().device() != nullptr)
        apply(path);
}

void PProfileController::apply(const QString& path) {
    PViewCamera& camera = m_tabs.currentPage()->camera();
    PDeviceProfile profile;
    PStatus status = PDeviceProfileFile::read(path, profile);
    PDeviceProfilePlan plan(*camera.device());
    if (status.isOk())
        status = plan.make(profile);
    if (!status.isOk()) {
        QMessageBox::warning(m_window, tr("Load profile"), status.reason());
        return;
    }
    PTextDialog::open(m_window, tr("Load profile"), PProfileReportText::html(camera.apply(plan)));
}

void PProfileController::save() {
    QFileDialog dialog(m_window, tr("Save profile"), PCaptureFolder::path(),
                       tr("Camera profiles (*.json)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"json"_qs);
    if (dialog.exec() == QDialog::Accepted)
        saveTo(dialog.selectedFiles().value(0));
}

void PProfileController::saveTo(const QString& path) {
    PDevice* const device = m_tabs.currentPage()->camera().device();
    if (device == nullptr) { // unplugged while the dialog was open
        emit messageChanged(tr("The camera was unplugged: nothing was saved."));
        return;
    }
    const PStatus status = PDeviceProfileFile::save(*device, path);
    emit messageChanged(status.isOk() ? tr("Saved %1").arg(path) : status.reason());
}
