// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PCameraController.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/actions/PRecordController.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>

#include <QAction>
#include <QInputDialog>
#include <QSignalBlocker>

#include <utility>

namespace {

constexpr double largestPixelMicrometres = 1000;

} // namespace

PCameraController::PCameraController(const PViewActions& actions, PCameraTabs& tabs,
                                     PCameraListPanel& list, PRecordController& recording,
                                     QWidget* window)
    : QObject(window)
    , m_actions(actions)
    , m_tabs(tabs)
    , m_recording(recording)
    , m_window(window) {
    connectActions();
    connectTabs();
    connectList(list);
    showPage(tabs.currentPage());
}

void PCameraController::connectTabs() {
    connect(&m_tabs, &PCameraTabs::pageAdded, this, &PCameraController::addPage);
    connect(&m_tabs, &PCameraTabs::currentPageChanged, this, &PCameraController::showPage);
    connect(&m_tabs, &PCameraTabs::currentStateChanged, this, &PCameraController::showState);
    connect(&m_tabs, &PCameraTabs::closeRequested, this, &PCameraController::closePage);
}

void PCameraController::connectList(PCameraListPanel& list) {
    const auto showEntries = [this, &list] { list.setEntries(m_tabs.entries()); };
    connect(&m_tabs, &PCameraTabs::entriesChanged, &list, showEntries);
    connect(&m_tabs, &PCameraTabs::currentPageChanged, &list,
            [&list, showEntries](const PCameraPage* page) {
                showEntries(); // the camera of a new tab may not be in the list yet
                if (page != nullptr)
                    list.select(page->camera().identity().id);
            });
    connect(&list, &PCameraListPanel::searchRequested, &m_tabs, &PCameraTabs::search);
    connect(&list, &PCameraListPanel::openRequested, this, [this](const QString& id) {
        const PStatus status = m_tabs.open(id);
        if (!status.isOk())
            emit messageChanged(status.reason());
    });
    showEntries();
}

void PCameraController::connectActions() {
    connect(m_actions.live, &QAction::toggled, this, &PCameraController::setLive);
    connect(m_actions.region, &QAction::toggled, this, &PCameraController::setRegionTool);
    connect(m_actions.wholeSensor, &QAction::triggered, this, [this] {
        PCameraPage* const page = m_tabs.currentPage();
        if (m_recording.mayChangeRegion(page->camera()))
            page->useWholeSensor();
    });
    connect(m_actions.pixelSize, &QAction::triggered, this, &PCameraController::choosePixelSize);
    connect(m_actions.search, &QAction::triggered, &m_tabs, &PCameraTabs::search);
    connect(m_actions.closeCamera, &QAction::triggered, this,
            [this] { closePage(m_tabs.currentPage()); });
}

void PCameraController::addPage(PCameraPage* page) {
    connect(&page->view(), &PImageView::regionCancelled, this,
            [this] { m_actions.region->setChecked(false); });
    connect(&page->view(), &PImageView::regionDrawn, this, [this, page](const QRect& region) {
        m_actions.region->setChecked(false); // before the question
        if (m_recording.mayChangeRegion(page->camera()))
            page->useRegion(region);
    });
    const PViewCamera& camera = page->camera();
    connect(&camera, &PViewCamera::stateChanged, this,
            [this, page, &camera, wasUnplugged = false]() mutable {
                const bool isUnplugged = camera.state() == PViewCamera::State::Unplugged;
                if (std::exchange(wasUnplugged, isUnplugged) != isUnplugged)
                    reportPresence(*page);
            });
}

/// The message above the picture is hidden behind the tab in front.
void PCameraController::reportPresence(const PCameraPage& page) {
    if (&page == m_tabs.currentPage())
        return;
    const PViewCamera& camera = page.camera();
    const QString text = camera.state() == PViewCamera::State::Unplugged
                             ? tr("%1 was unplugged")
                             : tr("%1 is plugged in again");
    emit messageChanged(text.arg(camera.identity().id));
}

void PCameraController::closePage(PCameraPage* page) {
    if (page != nullptr && m_recording.endForClosing(*page))
        m_tabs.closePage(page);
}

void PCameraController::showPage(PCameraPage* page) {
    m_actions.region->setChecked(false);
    for (QAction* action : m_actions.ofCamera())
        action->setEnabled(page != nullptr);
    showState();
}

void PCameraController::showState() {
    const PCameraPage* const page = m_tabs.currentPage();
    const bool hasDevice = page != nullptr && page->camera().device() != nullptr;
    const QSignalBlocker quiet(m_actions.live);
    m_actions.live->setChecked(page != nullptr &&
                               page->camera().state() == PViewCamera::State::Live);
    const bool canSetRegions = page != nullptr && page->hasRegions();
    for (QAction* action : {m_actions.region, m_actions.wholeSensor})
        action->setEnabled(canSetRegions);
    for (QAction* action : {m_actions.live, m_actions.loadProfile, m_actions.saveProfile})
        action->setEnabled(hasDevice);
    if (page == nullptr)
        return;
    const PStatus ready = page->camera().readiness();
    PViewActions::setObstacle(m_actions.snapshot, ready.reason());
    // A recording can be stopped until its files are complete.
    PViewActions::setObstacle(m_actions.record,
                              page->camera().isRecorded() ? QString() : ready.reason());
}

void PCameraController::setLive(bool on) {
    PViewCamera& camera = m_tabs.currentPage()->camera();
    if (!on && !m_recording.mayStopLive(camera))
        return showState();
    const PStatus status = camera.setLive(on);
    if (!status.isOk())
        emit messageChanged(status.reason());
}

void PCameraController::setRegionTool(bool on) {
    // The tool is active in the current tab only.
    for (PCameraPage* page : m_tabs.pages()) {
        const bool isHere = on && page == m_tabs.currentPage();
        page->view().setTool(isHere ? PImageView::Tool::Region : PImageView::Tool::Move);
    }
    emit messageChanged(on ? tr("Draw the region with the mouse; Esc cancels.") : QString());
}

void PCameraController::choosePixelSize() {
    PCameraPage* const page = m_tabs.currentPage();
    bool isAccepted = false;
    const double size = QInputDialog::getDouble(
        m_window, tr("Pixel size"),
        tr("Size of a pixel on the specimen at full resolution, in micrometres (0: no scale "
           "bar).\nThis is the pixel size of the sensor divided by the magnification."),
        page->pixelSize(), 0, largestPixelMicrometres, 4, &isAccepted);
    if (isAccepted)
        page->setPixelSize(size);
}

#include "moc_PCameraController.cpp"
