// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PPictureSaver.h>

#include <QObject>

class PViewCamera;
struct PCameraIdentity;

/// Takes and saves single pictures of cameras. The GUI thread.
class PCapture : public QObject {
    Q_OBJECT

public:
    explicit PCapture(QObject* parent = nullptr);

    /// Saves the still pictures of this camera from now on, in the capture folder.
    void follow(PViewCamera* camera);
    /// Asks the camera for a still picture.
    void takeStill(PViewCamera& camera);
    /// Saves a picture that this camera has taken, replacing what is there: the person has been
    /// asked.
    void saveFrame(const PCameraIdentity& camera, const PDeviceFrame& frame, const QString& path);

signals:
    /// How it went, in words for a status bar.
    void told(const QString& message);
    /// A picture was taken and is lost, and why.
    void lost(const QString& reason);

private:
    void saveStill(const PViewCamera& camera, const PDeviceFrame& frame);

    PPictureSaver m_saver;
};
