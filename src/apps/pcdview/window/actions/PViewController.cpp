// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PViewController.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/panels/PHistogramPanel.h>

#include <QAction>

#include <tuple>

PViewController::PViewController(const PViewActions& actions, PCameraTabs& tabs,
                                 PHistogramPanel& histogram, QObject* parent)
    : QObject(parent)
    , m_actions(actions)
    , m_tabs(tabs)
    , m_histogram(histogram) {
    connectActions();
    connect(&tabs, &PCameraTabs::pageAdded, this, &PViewController::addPage);
    connect(&tabs, &PCameraTabs::currentPageChanged, this, &PViewController::showPage);
    connect(&histogram, &PHistogramPanel::shown, this, &PViewController::analyse);
    connect(&m_analyser, &PFrameAnalyser::analysed, this, &PViewController::showAnalysis);
    showPage(tabs.currentPage());
}

void PViewController::connectActions() {
    const auto onView = [this](QAction* action, void (PImageView::*slot)()) {
        connect(action, &QAction::triggered, this,
                [this, slot] { (m_tabs.currentPage()->view().*slot)(); });
    };
    onView(m_actions.fit, &PImageView::fit);
    onView(m_actions.actualSize, &PImageView::actualSize);
    onView(m_actions.zoomIn, &PImageView::zoomIn);
    onView(m_actions.zoomOut, &PImageView::zoomOut);
    connect(m_actions.clipped, &QAction::toggled, this, &PViewController::applyStyle);
    connect(m_actions.autoContrast, &QAction::toggled, this, [this] {
        applyStyle();
        analyse(); // a stopped picture may not have been analysed yet
    });
}

void PViewController::addPage(PCameraPage* page) {
    connect(&page->camera(), &PViewCamera::frameChanged, this, [this, page] {
        if (page == m_tabs.currentPage())
            analyse();
    });
}

void PViewController::showPage(PCameraPage* page) {
    m_analyser.forget();
    showAnalysis({});
    if (page != nullptr)
        analyse();
}

void PViewController::analyse() {
    const bool isSeen = m_histogram.isVisible() || m_actions.autoContrast->isChecked();
    if (isSeen && m_tabs.currentPage() != nullptr)
        m_analyser.offer(m_tabs.currentPage()->camera().frame().image);
}

void PViewController::showAnalysis(const PFrameAnalysis& analysis) {
    m_analysis = analysis;
    m_histogram.setAnalysis(analysis);
    applyStyle();
}

void PViewController::applyStyle() {
    PCameraPage* const page = m_tabs.currentPage();
    if (page == nullptr)
        return;
    PViewStyle style;
    style.markClipped = m_actions.clipped->isChecked();
    if (m_actions.autoContrast->isChecked() && m_analysis.pixels > 0)
        std::tie(style.black, style.white) = m_analysis.usedLevels();
    page->view().setStyle(style);
}

#include "moc_PViewController.cpp"
