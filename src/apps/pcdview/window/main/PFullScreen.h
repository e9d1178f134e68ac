// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>

class PCameraPage;
class PCameraTabs;
class PViewActions;
class QAction;
class QMainWindow;

/// Shows the picture alone on the full screen while its action is checked, and then puts the window
/// back as it was. The GUI thread.
class PFullScreen : public QObject {
    Q_OBJECT

public:
    /// All must outlive it; the window is the parent.
    PFullScreen(QMainWindow* window, const PViewActions& actions, PCameraTabs& tabs);

private:
    void addPage(PCameraPage* page);
    void set(bool on);
    void enter();
    void leave();

    QMainWindow* m_window;
    QAction* m_action;
    PCameraTabs& m_tabs;
    QByteArray m_stateBefore;
    bool m_wasMaximized = false;
};
