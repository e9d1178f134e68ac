// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PPictureSaver.h>

#include <QHash>
#include <QObject>

#include <functional>

class PViewCamera;
struct PCameraIdentity;

/// Takes and saves single pictures of cameras. The GUI thread.
class PCapture : public QObject {
    Q_OBJECT

public:
    explicit PCapture(QObject* parent = nullptr);

    /// The size of a pixel of a camera's picture on the specimen, in micrometres; 0 if unknown.
    using PixelSize = std::function<double()>;

    /// Saves the stills of this camera from now on, in the capture folder.
    void follow(PViewCamera* camera, PixelSize pixelSize);
    /// Makes the camera take a still. If it is unplugged or closed before that has arrived,
    /// saveFailed() says so.
    void takeStill(PViewCamera& camera);
    /// Saves a picture that this camera has taken, replacing an existing file, as the user has
    /// confirmed. `pixelSize` is as PixelSize returns it.
    void saveFrame(const PCameraIdentity& camera, const PDeviceFrame& frame, double pixelSize,
                   const QString& path);
    /// The number of stills that the user has requested and that have not arrived yet.
    int awaited() const;
    /// The number of pictures that wait or are being saved.
    int unsaved() const { return m_saver.unsaved(); }
    /// Waits until there are none, and reports the results.
    void waitUntilSaved() { m_saver.waitUntilSaved(); }

signals:
    /// awaited() may have changed.
    void awaitedChanged(int stills);
    /// unsaved() has changed.
    void unsavedChanged(int pictures);
    /// A message for the status bar: what is being done, or the result.
    void messageChanged(const QString& message);
    /// A picture that the user has requested or that was taken is not saved, and why.
    void saveFailed(const QString& reason);

private:
    void giveUpAwaited(const PViewCamera* camera, const std::function<QString(int)>& reason);
    void noteUnplugged(const PViewCamera& camera);
    void saveStill(const PViewCamera& camera, const PDeviceFrame& frame, double pixelSize);

    PPictureSaver m_saver;
    QHash<const PViewCamera*, int> m_awaited; ///< stills that the user has requested
};
