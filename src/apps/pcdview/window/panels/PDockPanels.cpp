// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PDockPanels.h>

#include <apps/pcdview/window/panels/PCameraListPanel.h>
#include <apps/pcdview/window/panels/PFramesPanel.h>
#include <apps/pcdview/window/panels/PHistogramPanel.h>
#include <apps/pcdview/window/panels/PLogPanel.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>
#include <apps/pcdview/window/panels/PSettingsPanel.h>

#include <PGui/PColumnScroll.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QScrollBar>

#include <utility>

namespace {

constexpr int leftWidth = 280;

/// A small window has no room for a whole panel.
QWidget* scrolling(QWidget* panel) {
    auto* const scroll = new PColumnScroll;
    scroll->setWidget(panel);
    return scroll;
}

} // namespace

PDockPanels::PDockPanels(QMainWindow* window, PRecordings& recordings,
                         std::shared_ptr<PMemoryLogSink> log)
    : QObject(window)
    , cameras(new PCameraListPanel)
    , settings(new PSettingsPanel)
    , histogram(new PHistogramPanel)
    , frames(new PFramesPanel)
    , record(new PRecordPanel(recordings))
    , m_window(window) {
    dock("cameraList", tr("Cameras"), cameras, Qt::LeftDockWidgetArea);
    dock("histogramDock", tr("Histogram"), scrolling(histogram), Qt::LeftDockWidgetArea);
    m_recordDock = dock("recordDock", tr("Recording"), scrolling(record), Qt::LeftDockWidgetArea);
    dock("framesDock", tr("Frames"), frames, Qt::LeftDockWidgetArea);
    dock("settingsDock", tr("Camera settings"), settings, Qt::RightDockWidgetArea);
    dock("logDock", tr("Log"), new PLogPanel(std::move(log)), Qt::BottomDockWidgetArea);
    arrange();
}

void PDockPanels::arrange() {
    QDockWidget* const framesDock = m_docks[3];
    m_window->tabifyDockWidget(m_recordDock, framesDock);
    m_recordDock->raise();
    m_window->resizeDocks({m_docks[0]}, {leftWidth}, Qt::Horizontal);
    m_docks.last()->hide(); // the log, until the user opens it
    m_window->resizeDocks({m_docks[0], m_docks[1], m_recordDock}, {125, 252, 278}, Qt::Vertical);
    m_window->setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    m_window->setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
}

QDockWidget* PDockPanels::dock(const char* name, const QString& title, QWidget* panel,
                               Qt::DockWidgetArea at) {
    auto* const dock = new QDockWidget(title, m_window);
    dock->setObjectName(QString::fromLatin1(name));
    dock->setWidget(panel);
    m_window->addDockWidget(at, dock);
    m_docks.append(dock);
    return dock;
}

void PDockPanels::showProgress() {
    m_recordDock->raise();
    static_cast<QScrollArea*>(m_recordDock->widget())->verticalScrollBar()->setValue(0);
}

#include "moc_PDockPanels.cpp"
