// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class PCameraPage;
class PCameraTabs;
class PDockPanels;
class PModeChooser;
class PStatusFields;
class QWidget;

/// Shows the camera in front around its picture (the window's title, the mode box, the panels, the
/// status bar's fields) and keeps that up to date. The GUI thread.
class PCameraDisplay : public QObject {
    Q_OBJECT

public:
    /// All must outlive it; the window is the parent.
    PCameraDisplay(QWidget* window, PCameraTabs& tabs, PDockPanels& panels, PModeChooser& modes,
                   PStatusFields& status);

signals:
    /// A message for the status bar: the camera refused a mode or a setting.
    void messageChanged(const QString& message);

private:
    void addPage(PCameraPage* page);
    void showPage(PCameraPage* page);
    void showState();
    void showNumbers();

    QWidget* m_window;
    PCameraTabs& m_tabs;
    PDockPanels& m_panels;
    PModeChooser& m_modes;
    PStatusFields& m_status;
    QTimer m_numbers;
};
