// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PFullScreen.h>

#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

PFullScreen::PFullScreen(QMainWindow* window, const PViewActions& actions, PCameraTabs& tabs)
    : QObject(window)
    , m_window(window)
    , m_action(actions.fullScreen)
    , m_tabs(tabs) {
    connect(m_action, &QAction::toggled, this, &PFullScreen::set);
    connect(&tabs, &PCameraTabs::pageAdded, this, &PFullScreen::addPage);
    connect(&tabs, &PCameraTabs::currentPageChanged, this, [this](const PCameraPage* page) {
        if (page == nullptr) // nothing to show, and no bar that says what to do
            m_action->setChecked(false);
    });
}

void PFullScreen::addPage(PCameraPage* page) {
    connect(&page->view(), &PImageView::fullScreenRequested, m_action, &QAction::toggle);
}

void PFullScreen::set(bool on) {
    m_window->menuBar()->setHidden(on);
    m_tabs.setTabsShown(!on);
    m_window->statusBar()->setHidden(on);
    if (on)
        enter();
    else
        leave();
}

void PFullScreen::enter() {
    m_wasMaximized = m_window->isMaximized();
    m_stateBefore = m_window->saveState();
    for (QDockWidget* dock : m_window->findChildren<QDockWidget*>())
        dock->hide();
    for (QToolBar* bar : m_window->findChildren<QToolBar*>())
        bar->hide();
    m_window->showFullScreen();
}

void PFullScreen::leave() {
    m_wasMaximized ? m_window->showMaximized() : m_window->showNormal();
    m_window->restoreState(m_stateBefore); // docks and tool bars
}

#include "moc_PFullScreen.cpp"
