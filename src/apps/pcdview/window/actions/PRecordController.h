// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class PCameraPage;
class PCameraTabs;
class PDeviceProperty;
class PDockPanels;
class PRecording;
class PRecordings;
class PViewCamera;
class QAction;
class QWidget;
struct PDeviceProfile;

/// Starts and ends recordings on the user's request, and asks the user before frames would be lost.
/// The GUI thread.
class PRecordController : public QObject {
    Q_OBJECT

public:
    /// `record`: checked while the camera in front is recorded. All must outlive it; the window is
    /// the parent of it and of the questions.
    PRecordController(QAction* record, PCameraTabs& tabs, PDockPanels& panels,
                      PRecordings& recordings, QWidget* window);

    /// Ends the recording of this tab's camera, if there is one, after the user has confirmed that.
    /// False: it continues.
    bool endForClosing(const PCameraPage& page);
    /// True if the live picture of this camera may be stopped, which ends a recording: there is
    /// none, or the user has confirmed that.
    bool mayStopLive(const PViewCamera& camera);
    /// Likewise for its mode and region, as all frames of a recording have the same size.
    bool mayChangeMode(const PViewCamera& camera);
    bool mayChangeRegion(const PViewCamera& camera);
    /// Likewise for a setting or a profile that changes that size; true for any other.
    bool mayChangeSetting(const PViewCamera& camera, const PDeviceProperty& property,
                          const QVariant& value);
    bool mayLoadProfile(const PViewCamera& camera, const PDeviceProfile& profile);
    /// True if the window may close: no recording is running, or the user has confirmed that all of
    /// them end. They keep running until finishFiles().
    bool mayCloseWindow();
    /// Ends all recordings and shows what is still to be written, until their files are complete.
    /// True: the window may close; false: the user cancels that, or something could not be written.
    bool finishFiles();

signals:
    /// A message for the status bar: what is recorded, why not, or how it ended.
    void messageChanged(const QString& message);

private:
    void start();
    void stopOnRequest();
    bool confirmsStop(PRecording& recording);
    bool mayEnd(const PViewCamera& camera, const QString& question);
    bool mayResize(const PViewCamera& camera, const QString& question);
    bool confirmsEnd(QList<PRecording*> recordings, const QString& question);
    static QString closeQuestion();
    static QString toNames(const QList<PRecording*>& recordings);
    void showState();

    QAction* m_record;
    PCameraTabs& m_tabs;
    PDockPanels& m_panels;
    PRecordings& m_recordings;
    QWidget* m_window;
};
