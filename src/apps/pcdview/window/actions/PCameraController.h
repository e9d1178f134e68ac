// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class PCameraListPanel;
class PCameraPage;
class PCameraTabs;
class PRecordController;
class PViewActions;
class QWidget;

/// Opens and closes cameras, carries out the actions of the one in front (live picture, region,
/// pixel size), and enables the actions that its state allows. The GUI thread.
class PCameraController : public QObject {
    Q_OBJECT

public:
    /// All must outlive it; the window is the parent of it and of the dialogs. `list` shows the
    /// cameras; `recording` confirms that a recorded camera may be closed.
    PCameraController(const PViewActions& actions, PCameraTabs& tabs, PCameraListPanel& list,
                      PRecordController& recording, QWidget* window);

signals:
    /// A message for the status bar: why the camera refused something, or how to continue.
    void messageChanged(const QString& message);

private:
    void connectActions();
    void connectList(PCameraListPanel& list);
    void connectTabs();
    void addPage(PCameraPage* page);
    void reportPresence(const PCameraPage& page);
    void closePage(PCameraPage* page);
    void showPage(PCameraPage* page);
    void showState();
    void setLive(bool on);
    void setRegionTool(bool on);
    void choosePixelSize();

    const PViewActions& m_actions;
    PCameraTabs& m_tabs;
    PRecordController& m_recording;
    QWidget* m_window;
};
