// SPDX-License-Identifier: MIT
// The window and how its parts are connected; what its actions do is in PMainActions.cpp.
#include <apps/pcdview/window/main/PMainWindow.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/options/PViewLog.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/camera/PMessageBar.h>
#include <apps/pcdview/window/camera/PModeChooser.h>
#include <apps/pcdview/window/panels/PCameraListPanel.h>
#include <apps/pcdview/window/panels/PFramesPanel.h>
#include <apps/pcdview/window/panels/PHistogramPanel.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>
#include <apps/pcdview/window/panels/PSettingsPanel.h>

#include <QAction>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QToolBar>

namespace {

constexpr int numbersEveryMs = 250;

const QString geometryKey = u"window/geometry"_qs;
const QString stateKey = u"window/state"_qs;

} // namespace

PMainWindow::PMainWindow(PCameraHost& host, const QString& problem,
                         std::shared_ptr<PMemoryLogSink> log)
    : m_host(host)
    , m_cameraTabs(new PCameraTabs(host, problem))
    , m_actions(new PViewActions(this))
    , m_panels(new PDockPanels(this, m_recordings, std::move(log)))
    , m_status(new PStatusFields(new PMessageBar)) {
    setStatusBar(m_status->bar());
    setCentralWidget(m_cameraTabs);
    makeMenus();
    makeToolBar();
    connectCameraTabs();
    connectActions();
    connectViewActions();
    connectRecording();
    restoreLayout();
    connect(m_panels->histogram, &PHistogramPanel::shown, this, &PMainWindow::offerForAnalysis);
    connect(&m_analyser, &PFrameAnalyser::analysed, this, &PMainWindow::showAnalysis);
    connect(&m_capture, &PCapture::messageChanged, this,
            [this](const QString& message) { statusBar()->showMessage(message); });
    connect(&m_capture, &PCapture::saveFailed, this, &PMainWindow::showLoss);
    m_numbers.setInterval(numbersEveryMs);
    connect(&m_numbers, &QTimer::timeout, this, &PMainWindow::showNumbers);
    connect(m_panels->settings, &PSettingsPanel::buttonToggled, this, &PMainWindow::showNumbers);
    connect(m_panels->settings, &PSettingsPanel::refused, this,
            [this](const QString& message) { statusBar()->showMessage(message); });
    m_numbers.start();
    showPage(nullptr);
}

PMainWindow::~PMainWindow() {
    // While the camera can still account for the frames.
    m_recordings.endAsProgramCloses();
    // While everything connected to it still exists.
    delete m_cameraTabs;
}

void PMainWindow::restoreLayout() {
    const QSettings settings;
    resize(usualSize().boundedTo(screen()->availableSize()));
    restoreGeometry(settings.value(geometryKey).toByteArray());
    restoreState(settings.value(stateKey).toByteArray());
}

void PMainWindow::closeUnasked() {
    m_asks = false;
    close();
}

void PMainWindow::closeEvent(QCloseEvent* event) {
    if (!m_recordings.running().isEmpty() && !mayEnd(m_recordings.running()))
        return event->ignore();
    m_actions->fullScreen->setChecked(false);
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(stateKey, saveState());
    event->accept();
}

void PMainWindow::connectCameraTabs() {
    connect(m_cameraTabs, &PCameraTabs::pageAdded, this, &PMainWindow::addPage);
    connect(m_cameraTabs, &PCameraTabs::currentPageChanged, this, &PMainWindow::showPage);
    connect(m_cameraTabs, &PCameraTabs::currentStateChanged, this, &PMainWindow::showState);
    connect(m_cameraTabs, &PCameraTabs::closeRequested, this, &PMainWindow::closePage);
    connect(m_cameraTabs, &PCameraTabs::simulationRequested, this, &PMainWindow::restartSimulated);
    const auto showEntries = [this] { m_panels->cameras->setEntries(m_cameraTabs->entries()); };
    connect(m_cameraTabs, &PCameraTabs::entriesChanged, this, showEntries);
    connect(m_panels->cameras, &PCameraListPanel::searchRequested, m_cameraTabs,
            &PCameraTabs::search);
    connect(m_panels->cameras, &PCameraListPanel::openRequested, this, [this](const QString& id) {
        const PStatus status = m_cameraTabs->open(id);
        if (!status.isOk())
            statusBar()->showMessage(status.reason());
    });
    showEntries();
}

void PMainWindow::addPage(PCameraPage* page) {
    m_capture.follow(&page->camera(), [page] { return page->pixelSizeOfPicture(); });
    PImageView* const view = &page->view();
    const auto isCurrent = [this, page] { return page == m_cameraTabs->currentPage(); };
    connect(&page->camera(), &PViewCamera::frameChanged, this, [this, isCurrent] {
        if (isCurrent())
            offerForAnalysis();
    });
    const auto showView = [this, isCurrent] {
        if (isCurrent())
            m_status->showView(m_cameraTabs->currentPage());
    };
    connect(view, &PImageView::cursorChanged, this, showView);
    connect(view, &PImageView::zoomChanged, this, showView);
    connect(view, &PImageView::fullScreenRequested, m_actions->fullScreen, &QAction::toggle);
    connect(view, &PImageView::regionCancelled, this,
            [this] { m_actions->region->setChecked(false); });
}

void PMainWindow::showPage(PCameraPage* page) {
    m_analyser.forget();
    showAnalysis({});
    m_actions->region->setChecked(false);
    m_modes->setCamera(page == nullptr ? nullptr : &page->camera());
    for (PCameraPage* const other : m_cameraTabs->pages()) {
        if (other != page) // its panel goes, and only that knows of a run
            other->camera().setRunning(false);
    }
    for (QAction* action : m_actions->ofCamera())
        action->setEnabled(page != nullptr);
    if (page != nullptr) {
        page->view().setFocus();
        m_status->showView(page);
        offerForAnalysis();
    }
    showState();
}

void PMainWindow::showState() {
    const PCameraPage* const page = m_cameraTabs->currentPage();
    PDevice* const device = page == nullptr ? nullptr : page->camera().device();
    m_panels->settings->setDevice(device);
    const QSignalBlocker quiet(m_actions->live);
    m_actions->live->setChecked(page != nullptr &&
                                page->camera().state() == PViewCamera::State::Live);
    const bool canSetRegions = page != nullptr && page->hasRegions();
    for (QAction* action : {m_actions->region, m_actions->wholeSensor})
        action->setEnabled(canSetRegions);
    m_panels->record->setCamera(page == nullptr ? nullptr : &page->camera());
    showRecording();
    for (QAction* action : {m_actions->live, m_actions->snapshot, m_actions->record,
                            m_actions->loadProfile, m_actions->saveProfile})
        action->setEnabled(device != nullptr);
    showTitle();
    showNumbers();
}

void PMainWindow::showTitle() {
    const PCameraPage* const page = m_cameraTabs->currentPage();
    if (page == nullptr)
        return setWindowTitle(u"pcdview"_qs);
    const PCameraIdentity& camera = page->camera().identity();
    QString title = camera.id;
    if (camera.simulated)
        title = tr("Simulated camera") + u" — "_qs + title;
    if (page->camera().state() == PViewCamera::State::Unplugged)
        title += u" — "_qs + tr("unplugged");
    setWindowTitle(title + u" — pcdview"_qs);
}

void PMainWindow::showNumbers() {
    const PCameraPage* const page = m_cameraTabs->currentPage();
    if (page != nullptr) // whose panel the settings are
        page->camera().setRunning(m_panels->settings->hasPressedButton());
    m_status->showCamera(page);
    if (page == nullptr)
        m_panels->frames->setLedger({}, 0);
    else
        m_panels->frames->setLedger(page->camera().ledger(), page->camera().pictures());
}

/// The status bar forgets; the log does not, and the next picture may be one of many.
void PMainWindow::showLoss(const QString& reason) {
    statusBar()->showMessage(reason);
    PViewLog::warning(reason);
}

void PMainWindow::offerForAnalysis() {
    const bool isSeen = m_panels->histogram->isVisible() || m_actions->autoContrast->isChecked();
    if (!isSeen || m_cameraTabs->currentPage() == nullptr)
        return;
    m_analyser.offer(m_cameraTabs->currentPage()->camera().frame().image);
}

void PMainWindow::showAnalysis(const PFrameAnalysis& analysis) {
    m_analysis = analysis;
    m_panels->histogram->setAnalysis(analysis);
    applyStyle();
}

void PMainWindow::applyStyle() {
    PCameraPage* const page = m_cameraTabs->currentPage();
    if (page == nullptr)
        return;
    PViewStyle style;
    style.markClipped = m_actions->clipped->isChecked();
    if (m_actions->autoContrast->isChecked() && m_analysis.pixels > 0)
        std::tie(style.black, style.white) = m_analysis.usedLevels();
    page->view().setStyle(style);
}

void PMainWindow::setFullScreen(bool on) {
    menuBar()->setHidden(on);
    m_cameraTabs->setTabsShown(!on);
    statusBar()->setHidden(on);
    if (!on) {
        m_wasMaximized ? showMaximized() : showNormal();
        restoreState(m_stateBefore);
        return;
    }
    m_wasMaximized = isMaximized();
    m_stateBefore = saveState();
    m_panels->hideAll();
    m_bar->hide();
    showFullScreen();
}

void PMainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        m_actions->fullScreen->setChecked(false);
    QMainWindow::keyPressEvent(event);
}
