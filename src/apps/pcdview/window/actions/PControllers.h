// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class PCameraSdk;
class PCameraTabs;
class PDockPanels;
class PProfileController;
class PPictureController;
class PRecordController;
class PRecordings;
class PViewActions;
class QWidget;

/// Makes the controllers, which carry out the actions of the window. The GUI thread.
class PControllers : public QObject {
    Q_OBJECT

public:
    /// All must outlive it; the window is the parent of it and of the dialogs.
    PControllers(const PViewActions& actions, PCameraTabs& tabs, PDockPanels& panels,
                 PRecordings& recordings, const PCameraSdk& sdk, QWidget* window);

    PProfileController& profile() const { return *m_profile; }
    PRecordController& recording() const { return *m_recording; }
    PPictureController& picture() const { return *m_picture; }

signals:
    /// A message for the status bar; empty to clear it.
    void messageChanged(const QString& message);

private:
    PProfileController* m_profile; // children of the window
    PRecordController* m_recording;
    PPictureController* m_picture;
};
