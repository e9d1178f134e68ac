// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogSink.h>

#include <QList>
#include <QObject>

#include <memory>

class PCameraListPanel;
class PFramesPanel;
class PHistogramPanel;
class PRecordPanel;
class PRecordings;
class PSettingsPanel;
class QDockWidget;
class QMainWindow;

/// The panels around the picture, in docks of the window. The GUI thread.
class PDockPanels : public QObject {
    Q_OBJECT

public:
    PDockPanels(QMainWindow* window, PRecordings& recordings, std::shared_ptr<PMemoryLogSink> log);

    PCameraListPanel* cameras; // children of the window
    PSettingsPanel* settings;
    PHistogramPanel* histogram;
    PFramesPanel* frames;
    PRecordPanel* record;

    const QList<QDockWidget*>& docks() const { return m_docks; }
    /// Shows the progress of recordings where the panel "Recording" is open: in front of the panel
    /// that it shares its place with, and scrolled to the top.
    void showProgress();

private:
    void arrange();
    QDockWidget* dock(const char* name, const QString& title, QWidget* panel,
                      Qt::DockWidgetArea at);

    QMainWindow* m_window;
    QList<QDockWidget*> m_docks;
    QDockWidget* m_recordDock;
};
