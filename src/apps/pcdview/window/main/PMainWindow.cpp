// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PMainWindow.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/pcdview/camera/PFrameSizeChange.h>
#include <apps/pcdview/window/actions/PControllers.h>
#include <apps/pcdview/window/actions/PPictureController.h>
#include <apps/pcdview/window/actions/PProfileController.h>
#include <apps/pcdview/window/actions/PRecordController.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/camera/PMessageBar.h>
#include <apps/pcdview/window/camera/PModeChooser.h>
#include <apps/pcdview/window/main/PCameraDisplay.h>
#include <apps/pcdview/window/main/PFullScreen.h>
#include <apps/pcdview/window/main/PMenuBar.h>
#include <apps/pcdview/window/main/PStatusFields.h>
#include <apps/pcdview/window/main/PToolBar.h>
#include <apps/pcdview/window/panels/PDockPanels.h>
#include <apps/pcdview/window/panels/PSettingsPanel.h>

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QScreen>
#include <QSettings>
#include <QTimer>

namespace {

const QString geometryKey = u"window/geometry"_qs;
const QString stateKey = u"window/state"_qs;

/// For the borders and the title bar of a new window, which only the window manager knows, and says
/// once it is shown.
constexpr QSize roomForFrame(16, 48);

} // namespace

PMainWindow::PMainWindow(PCameraHost& host, const QString& problem,
                         std::shared_ptr<PMemoryLogSink> log)
    : m_cameraTabs(new PCameraTabs(host, problem))
    , m_actions(new PViewActions(this))
    , m_panels(new PDockPanels(this, m_recordings, std::move(log)))
    , m_controllers(
          new PControllers(*m_actions, *m_cameraTabs, *m_panels, m_recordings, host.sdk(), this)) {
    setCentralWidget(m_cameraTabs);
    makeBars();
    new PFullScreen(this, *m_actions, *m_cameraTabs); // a child
    connect(m_actions->quit, &QAction::triggered, this, &PMainWindow::close);
    restoreLayout();
}

PMainWindow::~PMainWindow() {
    // While the camera can still account for the frames.
    m_recordings.endAsProgramCloses();
    // While everything connected to it still exists.
    delete m_cameraTabs;
}

void PMainWindow::makeBars() {
    setMenuBar(new PMenuBar(*m_actions, m_panels->docks()));
    auto* const tools = new PToolBar(*m_actions);
    addToolBar(tools);
    auto* const status = new PStatusFields(new PMessageBar);
    setStatusBar(status->bar());
    tools->modes().setCondition([this](const PViewCamera& camera) {
        return m_controllers->recording().mayChangeMode(camera);
    });
    m_panels->settings->setCondition(
        PFrameSizeChange::roles(), [this](const PDeviceProperty& property, const QVariant& value) {
            const PCameraPage* const page = m_cameraTabs->currentPage();
            return page == nullptr ||
                   m_controllers->recording().mayChangeSetting(page->camera(), property, value);
        });
    const auto* const display =
        new PCameraDisplay(this, *m_cameraTabs, *m_panels, tools->modes(), *status);
    connect(&m_controllers->picture(), &PPictureController::unsavedChanged, status,
            &PStatusFields::showUnsaved);
    const auto showMessage = [bar = status->bar()](const QString& message) {
        bar->showMessage(message);
    };
    connect(display, &PCameraDisplay::messageChanged, this, showMessage);
    connect(m_controllers, &PControllers::messageChanged, this, showMessage);
}

void PMainWindow::restoreLayout() {
    const QSettings settings;
    resize(usualSize().boundedTo(screen()->availableSize() - roomForFrame));
    restoreGeometry(settings.value(geometryKey).toByteArray());
    restoreState(settings.value(stateKey).toByteArray());
    showDetachedPanelsLater();
}

/// Some window managers look for the window that a panel belongs to only when the panel is shown,
/// and leave it behind that window if there is none yet.
void PMainWindow::showDetachedPanelsLater() {
    for (QDockWidget* dock : m_panels->docks()) {
        if (!dock->isFloating() || dock->isHidden())
            continue;
        dock->hide();
        // On this thread, but from the event loop, which starts when the window is shown.
        QTimer::singleShot(0, dock, &QWidget::show);
    }
}

void PMainWindow::offerProfile(const QString& path) {
    m_controllers->profile().offer(path);
}

void PMainWindow::closeUnasked() {
    m_asks = false;
    close();
}

void PMainWindow::finishFiles() {
    constexpr std::chrono::hours longEnough(24); // a time that can be added to any other
    m_recordings.endAsProgramCloses();
    m_recordings.finishWithin(longEnough);
    m_controllers->picture().waitUntilSaved();
}

bool PMainWindow::mayClose() {
    PRecordController& recording = m_controllers->recording();
    return recording.mayCloseWindow() && m_controllers->picture().finishSaving() &&
           recording.finishFiles();
}

void PMainWindow::closeEvent(QCloseEvent* event) {
    // A signal may end the program, and with it the question that mayClose() asks.
    if (m_asks && !mayClose() && m_asks)
        return event->ignore();
    m_actions->fullScreen->setChecked(false);
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(stateKey, saveState());
    event->accept();
}

void PMainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        m_actions->fullScreen->setChecked(false);
    QMainWindow::keyPressEvent(event);
}

#include "moc_PMainWindow.cpp"
