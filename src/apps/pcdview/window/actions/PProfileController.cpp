// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PProfileController.h>

#include <apps/pcdview/camera/PSettingTitle.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/capture/PNamePattern.h>
#include <apps/pcdview/options/PViewLog.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/dialogs/PProfileReportText.h>
#include <apps/pcdview/window/dialogs/PTextDialog.h>

#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>

#include <utility>

namespace {

/// Of files that the desktop opens with this program, while editors take them for JSON.
const QString profileSuffix = u"pcdprofile.json"_qs;

/// The camera's id, as far as every file system takes it.
QString suggestedName(const QString& camera) {
    PNamePattern pattern;
    pattern.setText(u"{camera}"_qs);
    return pattern.name(camera, {}, 1) + u'.' + profileSuffix;
}

} // namespace

PProfileController::PProfileController(const PViewActions& actions, PCameraTabs& tabs,
                                       QWidget* window)
    : QObject(window)
    , m_tabs(tabs)
    , m_window(window) {
    connect(actions.loadProfile, &QAction::triggered, this, &PProfileController::load);
    connect(actions.saveProfile, &QAction::triggered, this, &PProfileController::save);
    connect(&tabs, &PCameraTabs::currentPageChanged, this, &PProfileController::askToApply);
    connect(&tabs, &PCameraTabs::currentStateChanged, this, &PProfileController::askToApply);
}

void PProfileController::setCondition(
    std::function<bool(const PViewCamera&, const PDeviceProfile&)> condition) {
    m_condition = std::move(condition);
}

QString PProfileController::filter() {
    return tr("Camera profiles") + u" (*.%1 *.json)"_qs.arg(profileSuffix);
}

/// Where the dialogs begin: profiles are often kept apart from pictures.
QString PProfileController::folder() const {
    return QFileInfo(m_folder).isDir() ? m_folder : PCaptureFolder::path();
}

void PProfileController::load() {
    const QString path =
        QFileDialog::getOpenFileName(m_window, tr("Load profile"), folder(), filter());
    if (path.isEmpty())
        return;
    m_folder = QFileInfo(path).path();
    applyIfPluggedIn(path);
}

/// The camera may have been unplugged while a dialog was open.
void PProfileController::applyIfPluggedIn(const QString& path) {
    if (m_tabs.currentPage()->camera().device() != nullptr)
        apply(path);
}

void PProfileController::offer(const QString& path) {
    PDeviceProfile profile;
    const PStatus status = PDeviceProfileFile::read(path, profile);
    if (!status.isOk()) {
        PViewLog::warning(status.reason()); // for a user at a terminal
        QMessageBox::warning(m_window, tr("Load profile"), status.reason());
        return;
    }
    m_offered = path;
    askToApply();
    if (!m_offered.isEmpty())
        emit messageChanged(tr("Connect a camera to apply “%1”.").arg(QFileInfo(path).fileName()));
}

/// Not without asking: the file may have been opened with a double click, to look at it.
void PProfileController::askToApply() {
    const PCameraPage* const page = m_tabs.currentPage();
    if (m_offered.isEmpty() || page == nullptr || page->camera().device() == nullptr)
        return;
    const QString path = std::exchange(m_offered, {});
    const QString question = tr("Apply the settings in “%1” to %2?")
                                 .arg(QFileInfo(path).fileName(), page->camera().identity().id);
    auto* const box = new QMessageBox(QMessageBox::Question, tr("Load profile"), question,
                                      QMessageBox::Apply | QMessageBox::Cancel, m_window);
    box->setDefaultButton(QMessageBox::Apply);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    connect(box, &QMessageBox::finished, this, [this, path](int button) {
        if (button == QMessageBox::Apply)
            applyIfPluggedIn(path);
    });
    box->open();
}

void PProfileController::apply(const QString& path) {
    PViewCamera& camera = m_tabs.currentPage()->camera();
    const QPointer<PDevice> device = camera.device();
    PDeviceProfile profile;
    PStatus status = PDeviceProfileFile::read(path, profile);
    PDeviceProfilePlan plan(*device);
    if (status.isOk())
        status = plan.make(profile);
    if (!status.isOk()) {
        QMessageBox::warning(m_window, tr("Load profile"), status.reason());
        return;
    }
    if (m_condition && !m_condition(camera, profile))
        return;
    if (device == nullptr || camera.device() != device) // unplugged while the user was asked
        return;
    const PDeviceProfileReport report = camera.apply(plan);
    const auto title = [&](const QByteArray& id) { return PSettingTitle::of(device, id); };
    PTextDialog::open(m_window, tr("Load profile"), PProfileReportText::html(report, title));
}

void PProfileController::save() {
    QFileDialog dialog(m_window, tr("Save profile"), folder(), filter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(profileSuffix);
    dialog.selectFile(suggestedName(m_tabs.currentPage()->camera().identity().id));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = dialog.selectedFiles().value(0);
    m_folder = QFileInfo(path).path();
    saveTo(path);
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

#include "moc_PProfileController.cpp"
