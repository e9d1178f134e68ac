// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PRecordings.h>

#include <PLog/PLogSink.h>

#include <QMainWindow>

class PCameraHost;
class PCameraTabs;
class PControllers;
class PDockPanels;
class PViewActions;

/// The viewer's window: the open cameras in the middle, panels and bars around them. The GUI
/// thread.
class PMainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// `problem`: why no camera can be found at all; empty if one could.
    PMainWindow(PCameraHost& host, const QString& problem, std::shared_ptr<PMemoryLogSink> log);
    /// Ends the recordings, then closes the cameras.
    ~PMainWindow() override;

    /// Its size when it is opened for the first time, on a screen that is large enough.
    static QSize usualSize() { return {1440, 900}; }

    PCameraTabs& cameraTabs() { return *m_cameraTabs; }
    /// Asks the user whether to apply this profile (see PProfileController::offer).
    void offerProfile(const QString& path);
    /// Closes the window without a question.
    void closeUnasked();
    /// Ends the recordings, and waits until their files and all pictures are complete.
    void finishFiles();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeBars();
    void restoreLayout();
    void showDetachedPanelsLater();
    bool mayClose();

    PRecordings m_recordings;
    PCameraTabs* m_cameraTabs; // children
    PViewActions* m_actions;
    PDockPanels* m_panels;
    PControllers* m_controllers;
    bool m_asks = true;
};
