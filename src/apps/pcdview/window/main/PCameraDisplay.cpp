// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PCameraDisplay.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/camera/PModeChooser.h>
#include <apps/pcdview/window/main/PStatusFields.h>
#include <apps/pcdview/window/main/PWindowTitle.h>
#include <apps/pcdview/window/panels/PDockPanels.h>
#include <apps/pcdview/window/panels/PFramesPanel.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>
#include <apps/pcdview/window/panels/PSettingsPanel.h>

namespace {

constexpr int numbersEveryMs = 250;

PSettingsPanel::Without findMissing(const PViewCamera* camera) {
    using Without = PSettingsPanel::Without;
    if (camera == nullptr)
        return Without::Selection;
    return camera->state() == PViewCamera::State::NotOpen ? Without::Opening : Without::Connection;
}

} // namespace

PCameraDisplay::PCameraDisplay(QWidget* window, PCameraTabs& tabs, PDockPanels& panels,
                               PModeChooser& modes, PStatusFields& status)
    : QObject(window)
    , m_window(window)
    , m_tabs(tabs)
    , m_panels(panels)
    , m_modes(modes)
    , m_status(status) {
    connect(&tabs, &PCameraTabs::pageAdded, this, &PCameraDisplay::addPage);
    connect(&tabs, &PCameraTabs::currentPageChanged, this, &PCameraDisplay::showPage);
    connect(&tabs, &PCameraTabs::currentStateChanged, this, &PCameraDisplay::showState);
    connect(panels.settings, &PSettingsPanel::buttonToggled, this, &PCameraDisplay::showNumbers);
    connect(panels.settings, &PSettingsPanel::refused, this, &PCameraDisplay::messageChanged);
    connect(&modes, &PModeChooser::refused, this, &PCameraDisplay::messageChanged);
    connect(&m_numbers, &QTimer::timeout, this, &PCameraDisplay::showNumbers);
    m_numbers.start(numbersEveryMs);
    showPage(tabs.currentPage());
}

void PCameraDisplay::addPage(PCameraPage* page) {
    const auto showView = [this, page] {
        if (page == m_tabs.currentPage())
            m_status.showView(page);
    };
    connect(&page->view(), &PImageView::cursorChanged, this, showView);
    connect(&page->view(), &PImageView::zoomChanged, this, showView);
}

void PCameraDisplay::showPage(PCameraPage* page) {
    m_modes.setCamera(page == nullptr ? nullptr : &page->camera());
    for (PCameraPage* const other : m_tabs.pages()) {
        if (other != page) // its panel is hidden, and only the panel has the state of a run
            other->camera().setRunning(false);
    }
    if (page != nullptr) {
        page->view().setFocus();
        m_status.showView(page);
    }
    showState();
}

void PCameraDisplay::showState() {
    const PCameraPage* const page = m_tabs.currentPage();
    PViewCamera* const camera = page == nullptr ? nullptr : &page->camera();
    m_panels.settings->setDevice(camera == nullptr ? nullptr : camera->device(),
                                 findMissing(camera));
    m_panels.record->setCamera(camera);
    m_window->setWindowTitle(PWindowTitle::toText(camera));
    showNumbers();
}

void PCameraDisplay::showNumbers() {
    const PCameraPage* const page = m_tabs.currentPage();
    if (page != nullptr) // whose panel the settings are
        page->camera().setRunning(m_panels.settings->hasPressedButton());
    m_status.showCamera(page);
    if (page == nullptr)
        m_panels.frames->setLedger({}, 0);
    else
        m_panels.frames->setLedger(page->camera().ledger(), page->camera().pictures());
}

#include "moc_PCameraDisplay.cpp"
