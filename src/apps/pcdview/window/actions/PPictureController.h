// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PCapture.h>

#include <QObject>

class PCameraTabs;
class PViewActions;
class QWidget;

/// Takes and saves pictures of the camera in front when the actions for it are triggered, and saves
/// the stills of all cameras with a tab. The GUI thread.
class PPictureController : public QObject {
    Q_OBJECT

public:
    /// Actions and tabs must outlive it; the window is the parent of it and of the dialogs.
    PPictureController(const PViewActions& actions, PCameraTabs& tabs, QWidget* window);

    /// Asks whether to close without the stills that have not arrived, and waits until no picture
    /// is left to be saved, while a message shows how many are. False: the user does not want to
    /// lose those or wait for these, or a picture could not be saved.
    bool finishSaving();
    /// Waits until no picture is left to be saved, without a message.
    void waitUntilSaved() { m_capture.waitUntilSaved(); }

signals:
    /// The number of pictures that wait or are being saved has changed.
    void unsavedChanged(int pictures);
    /// A message for the status bar: what is being done, or the result.
    void messageChanged(const QString& message);

private:
    bool confirmsLoss();
    bool waitForFiles();
    void saveShown();
    void chooseFiles();
    void showFailure(const QString& reason);

    PCapture m_capture;
    PCameraTabs& m_tabs;
    QWidget* m_window;
};
