// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalyser.h>
#include <apps/pcdview/capture/PCapture.h>
#include <apps/pcdview/capture/PRecordings.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/main/PStatusFields.h>
#include <apps/pcdview/window/panels/PDockPanels.h>

#include <QMainWindow>
#include <QTimer>

class PCameraTabs;
class PCameraHost;
class PCameraPage;
class PModeChooser;
class QToolBar;

/// The viewer's window: the open cameras in the middle, panels around them. The GUI thread.
class PMainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// `problem`: why no camera can be found at all; empty if one could.
    PMainWindow(PCameraHost& host, const QString& problem, std::shared_ptr<PMemoryLogSink> log);
    ~PMainWindow() override;

    /// Its size when it is opened for the first time, on a screen that has the room.
    static QSize usualSize() { return {1440, 900}; }

    PCameraTabs& cameraTabs() { return *m_cameraTabs; }
    /// Closes the window without a question.
    void closeUnasked();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeMenus();
    void makeFileMenu();
    void makeCameraMenu();
    void makeViewMenu();
    void makeThemeMenu(QMenu* menu);
    void makeToolBar();
    void connectCameraTabs();
    void connectActions();
    void connectViewActions();
    void connectRecording();
    void restoreLayout();

    void addPage(PCameraPage* page);
    void showPage(PCameraPage* page);
    void showState();
    void showTitle();
    void showNumbers();
    void showAnalysis(const PFrameAnalysis& analysis);
    void showLoss(const QString& reason);
    void offerForAnalysis();
    void applyStyle();
    void setFullScreen(bool on);
    void setRegionTool(bool on);

    void startRecording();
    void askToStopRecording();
    bool isToBeStopped(PRecording& recording);
    void showRecording();
    bool mayEnd(const QList<PRecording*>& recordings);
    void closePage(PCameraPage* page);
    void askForPictureName();
    void askForCaptureFiles();
    void askForPixelSize();
    void loadProfile();
    void saveProfile();
    void showText(const QString& title, const QString& html);
    void restartSimulated();

    PCameraHost& m_host;
    PFrameAnalyser m_analyser;
    PFrameAnalysis m_analysis;
    PCapture m_capture;
    PRecordings m_recordings;
    QTimer m_numbers;
    PCameraTabs* m_cameraTabs; // children
    PViewActions* m_actions;
    PDockPanels* m_panels;
    PStatusFields* m_status;
    PModeChooser* m_modes = nullptr;
    QToolBar* m_bar = nullptr;
    QByteArray m_stateBefore; ///< the full screen, as is the next
    bool m_wasMaximized = false;
    bool m_asks = true;
};
