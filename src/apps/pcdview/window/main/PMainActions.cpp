// SPDX-License-Identifier: MIT
// What the actions of the main window do, and where they stand.
#include <apps/pcdview/window/main/PMainWindow.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/options/PTheme.h>
#include <apps/pcdview/options/PViewOptions.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/camera/PModeChooser.h>
#include <apps/pcdview/window/dialogs/PCaptureDialog.h>
#include <apps/pcdview/window/dialogs/PHelpTexts.h>
#include <apps/pcdview/window/dialogs/PProfileReportText.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcess>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QToolBar>

namespace {

constexpr double largestPixelMicrometres = 1000;

QString profileFilter() {
    return PMainWindow::tr("Camera profiles (*.json)");
}

} // namespace

void PMainWindow::makeMenus() {
    makeFileMenu();
    makeCameraMenu();
    makeViewMenu();
    QMenu* const help = menuBar()->addMenu(tr("&Help"));
    help->addActions({m_actions->help, m_actions->about});
}

void PMainWindow::makeFileMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    menu->addActions(
        {m_actions->snapshot, m_actions->savePicture, m_actions->record, m_actions->captureFiles});
    menu->addSeparator();
    menu->addActions({m_actions->loadProfile, m_actions->saveProfile});
    menu->addSeparator();
    menu->addAction(m_actions->quit);
}

void PMainWindow::makeCameraMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&Camera"));
    menu->addActions(
        {m_actions->live, m_actions->region, m_actions->wholeSensor, m_actions->pixelSize});
    menu->addSeparator();
    menu->addActions({m_actions->search, m_actions->closeCamera});
}

void PMainWindow::makeViewMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&View"));
    menu->addActions({m_actions->fit, m_actions->actualSize, m_actions->zoomIn, m_actions->zoomOut,
                      m_actions->fullScreen});
    menu->addSeparator();
    menu->addActions({m_actions->clipped, m_actions->autoContrast});
    menu->addSeparator();
    QMenu* const panels = menu->addMenu(tr("&Panels"));
    for (QDockWidget* dock : m_panels->docks())
        panels->addAction(dock->toggleViewAction());
    makeThemeMenu(menu->addMenu(tr("&Colours")));
}

void PMainWindow::makeThemeMenu(QMenu* menu) {
    const QHash<PTheme::Kind, QString> titles{{PTheme::Kind::System, tr("As the &system")},
                                              {PTheme::Kind::Light, tr("&Light")},
                                              {PTheme::Kind::Dark, tr("&Dark")}};
    auto* const group = new QActionGroup(menu);
    for (PTheme::Kind kind : PTheme::all()) {
        QAction* const action = menu->addAction(titles[kind]);
        action->setCheckable(true);
        action->setChecked(kind == PTheme::chosen());
        group->addAction(action);
        connect(action, &QAction::triggered, this, [kind] { PTheme::choose(kind); });
    }
}

void PMainWindow::makeToolBar() {
    m_bar = addToolBar(tr("Tool bar"));
    m_bar->setObjectName(u"toolBar"_qs);
    m_bar->setMovable(false);
    m_bar->addAction(m_actions->live);
    m_modes = new PModeChooser;
    m_bar->addWidget(m_modes);
    m_bar->addSeparator();
    m_bar->addActions({m_actions->snapshot, m_actions->record});
    m_bar->addSeparator();
    m_bar->addActions({m_actions->fit, m_actions->actualSize, m_actions->fullScreen});
    m_bar->addSeparator();
    m_bar->addActions({m_actions->region, m_actions->wholeSensor});
    m_bar->addSeparator();
    m_bar->addActions({m_actions->clipped, m_actions->autoContrast});
    connect(m_modes, &PModeChooser::refused, this,
            [this](const QString& reason) { statusBar()->showMessage(reason); });
}

void PMainWindow::connectActions() {
    connect(m_actions->snapshot, &QAction::triggered, this,
            [this] { m_capture.takeStill(m_cameraTabs->currentPage()->camera()); });
    connect(m_actions->savePicture, &QAction::triggered, this, &PMainWindow::askForPictureName);
    connect(m_actions->captureFiles, &QAction::triggered, this, &PMainWindow::askForCaptureFiles);
    connect(m_actions->loadProfile, &QAction::triggered, this, &PMainWindow::loadProfile);
    connect(m_actions->saveProfile, &QAction::triggered, this, &PMainWindow::saveProfile);
    connect(m_actions->closeCamera, &QAction::triggered, this,
            [this] { closePage(m_cameraTabs->currentPage()); });
    connect(m_actions->quit, &QAction::triggered, this, &PMainWindow::close);
    connect(m_actions->live, &QAction::toggled, this, [this](bool on) {
        const PStatus status = m_cameraTabs->currentPage()->camera().setLive(on);
        if (!status.isOk())
            statusBar()->showMessage(status.reason());
    });
    connect(m_actions->region, &QAction::toggled, this, &PMainWindow::setRegionTool);
    connect(m_actions->wholeSensor, &QAction::triggered, this,
            [this] { m_cameraTabs->currentPage()->useWholeSensor(); });
    connect(m_actions->pixelSize, &QAction::triggered, this, &PMainWindow::askForPixelSize);
    connect(m_actions->search, &QAction::triggered, m_cameraTabs, &PCameraTabs::search);
}

void PMainWindow::connectViewActions() {
    const auto onView = [this](QAction* action, void (PImageView::*slot)()) {
        connect(action, &QAction::triggered, this,
                [this, slot] { (m_cameraTabs->currentPage()->view().*slot)(); });
    };
    onView(m_actions->fit, &PImageView::fit);
    onView(m_actions->actualSize, &PImageView::actualSize);
    onView(m_actions->zoomIn, &PImageView::zoomIn);
    onView(m_actions->zoomOut, &PImageView::zoomOut);
    connect(m_actions->fullScreen, &QAction::toggled, this, &PMainWindow::setFullScreen);
    connect(m_actions->clipped, &QAction::toggled, this, &PMainWindow::applyStyle);
    connect(m_actions->autoContrast, &QAction::toggled, this, [this] {
        applyStyle();
        offerForAnalysis(); // a picture that stands has not been looked at if nobody wanted it
    });
    connect(m_actions->help, &QAction::triggered, this, [this] {
        showText(tr("Keyboard and mouse"), PHelpTexts::keysAndMouse(m_actions->withShortcut()));
    });
    connect(m_actions->about, &QAction::triggered, this,
            [this] { showText(tr("About pcdview"), PHelpTexts::about(m_host.sdk())); });
}

void PMainWindow::connectRecording() {
    connect(m_actions->record, &QAction::toggled, this, [this](bool on) {
        if (on)
            startRecording();
        else
            askToStopRecording();
    });
    connect(m_panels->record, &PRecordPanel::startRequested, this, &PMainWindow::startRecording);
    connect(&m_recordings, &PRecordings::changed, this, &PMainWindow::showRecording);
    connect(&m_recordings, &PRecordings::finished, this,
            [this](const QString& camera, const QString& message) {
                statusBar()->showMessage(camera + u": "_qs + message);
            });
}

void PMainWindow::startRecording() {
    PCameraPage* const page = m_cameraTabs->currentPage();
    PViewCamera& camera = page->camera();
    const PRecordSettings settings = m_panels->record->settings();
    settings.remember();
    const PStatus status = m_recordings.start(camera, settings, page->pixelSizeOfPicture());
    const QString message = status.isOk()
                                ? tr("Recording to %1").arg(m_recordings.of(&camera)->path())
                                : tr("No recording: %1").arg(status.reason());
    statusBar()->showMessage(message);
    if (!status.isOk())
        m_panels->record->showMessage(camera.identity().id, message);
    m_panels->showProgress();
    showRecording();
}

/// A key is easily pressed by mistake, and frames that were not recorded are lost.
void PMainWindow::askToStopRecording() {
    const QPointer<PRecording> recording = m_recordings.of(&m_cameraTabs->currentPage()->camera());
    const bool isMeant = recording != nullptr && isToBeStopped(*recording);
    if (isMeant && recording != nullptr) // it may have ended while the question was open
        recording->stop();
    showRecording();
}

/// The question goes away with a recording that takes no more frames: nothing is left to stop.
bool PMainWindow::isToBeStopped(PRecording& recording) {
    QMessageBox question(QMessageBox::Question, tr("Recording"),
                         tr("Stop the recording of %1?").arg(recording.cameraId()),
                         QMessageBox::Yes | QMessageBox::No, this);
    question.setDefaultButton(QMessageBox::No);
    connect(&recording, &PRecording::finished, &question, &QDialog::reject);
    connect(&recording, &PRecording::changed, &question, [&] {
        if (recording.progress().isOver)
            question.reject();
    });
    return question.exec() == QMessageBox::Yes;
}

void PMainWindow::showRecording() {
    const PCameraPage* const page = m_cameraTabs->currentPage();
    const QSignalBlocker quiet(m_actions->record);
    m_actions->record->setChecked(page != nullptr && m_recordings.of(&page->camera()) != nullptr);
}

bool PMainWindow::mayEnd(const QList<PRecording*>& recordings) {
    if (!m_asks)
        return true;
    QStringList cameras;
    for (const PRecording* recording : recordings)
        cameras.append(recording->cameraId());
    const QString question =
        tr("Recording is under way: %1. End it and close?").arg(cameras.join(u", "_qs));
    return QMessageBox::question(this, tr("Recording"), question,
                                 QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void PMainWindow::closePage(PCameraPage* page) {
    if (page == nullptr)
        return;
    const QPointer<PRecording> recording = m_recordings.of(&page->camera());
    if (recording != nullptr && !mayEnd({recording}))
        return;
    // While its camera can still account for the frames.
    if (recording != nullptr)
        recording->endAsCameraCloses();
    m_cameraTabs->closePage(page);
}

void PMainWindow::setRegionTool(bool on) {
    // A tool that was taken up in another tab does not wait there.
    for (PCameraPage* page : m_cameraTabs->pages()) {
        const bool isHere = on && page == m_cameraTabs->currentPage();
        page->view().setTool(isHere ? PImageView::Tool::Region : PImageView::Tool::Move);
    }
    statusBar()->showMessage(on ? tr("Draw the region with the mouse; Esc puts it away.")
                                : QString());
}

void PMainWindow::askForPictureName() {
    const PCameraPage* const page = m_cameraTabs->currentPage();
    const PViewCamera& camera = page->camera();
    // The one that was on the screen, not one that comes while the dialog is open.
    const PDeviceFrame frame = camera.frame();
    const double pixelSize = page->pixelSizeOfPicture();
    if (frame.image.isNull())
        return statusBar()->showMessage(tr("There is no picture yet."));
    QFileDialog dialog(this, tr("Save shown picture"), QString(),
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
        statusBar()->showMessage(name.reason());
}

void PMainWindow::askForCaptureFiles() {
    const PCameraPage* const page = m_cameraTabs->currentPage();
    PCaptureDialog dialog(page == nullptr ? tr("Camera") : page->camera().identity().id, this);
    dialog.exec();
}

void PMainWindow::askForPixelSize() {
    PCameraPage* const page = m_cameraTabs->currentPage();
    bool isAccepted = false;
    const double size = QInputDialog::getDouble(
        this, tr("Pixel size"),
        tr("Size of a pixel on the specimen at the full resolution, in micrometres (0: no scale "
           "bar).\nIt is the size on the sensor divided by the magnification."),
        page->pixelSize(), 0, largestPixelMicrometres, 4, &isAccepted);
    if (isAccepted)
        page->setPixelSize(size);
}

void PMainWindow::loadProfile() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Load profile"),
                                                      PCaptureFolder::path(), profileFilter());
    PViewCamera& camera = m_cameraTabs->currentPage()->camera();
    if (path.isEmpty() || camera.device() == nullptr)
        return;
    PDeviceProfile profile;
    PStatus status = PDeviceProfileFile::read(path, profile);
    PDeviceProfilePlan plan(*camera.device());
    if (status.isOk())
        status = plan.make(profile);
    if (!status.isOk()) {
        QMessageBox::warning(this, tr("Load profile"), status.reason());
        return;
    }
    showText(tr("Load profile"), PProfileReportText::html(camera.apply(plan)));
}

void PMainWindow::saveProfile() {
    QFileDialog dialog(this, tr("Save profile"), PCaptureFolder::path(), profileFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"json"_qs);
    if (dialog.exec() != QDialog::Accepted)
        return;
    // Asked only now: it may have been unplugged while the dialog was open.
    PDevice* const device = m_cameraTabs->currentPage()->camera().device();
    if (device == nullptr)
        return statusBar()->showMessage(tr("The camera was unplugged: nothing was saved."));
    const QString path = dialog.selectedFiles().value(0);
    const PStatus status = PDeviceProfileFile::save(*device, path);
    statusBar()->showMessage(status.isOk() ? tr("Saved %1").arg(path) : status.reason());
}

void PMainWindow::showText(const QString& title, const QString& html) {
    auto* const box = new QMessageBox(QMessageBox::NoIcon, title, html, QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::RichText);
    box->open();
}

void PMainWindow::restartSimulated() {
    // A camera library stays loaded until the program ends.
    const QStringList words = PViewOptions::withSimulatedCameras(QCoreApplication::arguments());
    if (!close())
        return;
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), words)) {
        show();
        statusBar()->showMessage(tr("The program cannot be started again."));
    }
}
