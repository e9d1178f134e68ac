// SPDX-License-Identifier: MIT
#pragma once

#include <gstreamer/camera/PGstCatalogue.h>
#include <gstreamer/camera/PGstOptions.h>
#include <gstreamer/camera/PGstSettings.h>

#include <gstreamer/frame/PGstFrameQueue.h>

#include <apps/common/camera/PTriggerControl.h>

#include <PCd/frame/PDeviceMode.h>

#include <PCore/PStatus.h>

#include <QList>
#include <QObject>

#include <memory>

class PDevice;

/// The camera of one element, from opening to closing; it may be unplugged at any moment in
/// between. Its frames, and what happens to it, go into a queue. Qt's thread (PQtLoop).
class PGstCamera : public QObject {
    Q_OBJECT

public:
    /// How something ended; the element reports each with another error of GStreamer.
    struct Outcome {
        /// The kinds of ends.
        enum class Code { Done, NotFound, Busy, WrongSettings, Failed };
        Code code = Code::Done;
        QString reason;
    };

    explicit PGstCamera(std::shared_ptr<PGstFrameQueue> queue);
    /// Closes.
    ~PGstCamera() override;

    /// Loads SDK and plugins if they are not, finds and opens the camera, and prepares it as the
    /// options say.
    Outcome open(const PGstOptions& options);
    /// Stops and closes it; the queue gets nothing more.
    void close();

    QString id() const { return m_id; }
    /// What the user should know about the SDK; empty if nothing.
    QString note() const;
    /// The modes that the pipeline may choose from: that of the options, else all; empty if the
    /// camera does not report them.
    QList<PDeviceMode> modes() const;
    /// The mode in use.
    PDeviceMode mode() const;

    /// What it can be set to.
    PGstCatalogue catalogue() const;
    /// The value of one setting, read from the camera; empty if it has none, or does not report it.
    std::optional<QString> value(const QByteArray& id) const;

    /// Sets the mode, for as long as the camera is open.
    PStatus setMode(const PDeviceMode& mode);
    /// Applies more settings (PGstSettings), now and if the camera is plugged in again.
    PStatus apply(const QString& settings);
    /// Fails if it is unplugged or does not answer, and the options do not say to wait for it.
    PStatus checkPlugged() const;
    /// True if it is plugged in and answers.
    bool isPresent() const;
    /// Starts the stream, and fires the first triggers; after a failure it is stopped.
    PStatus start();
    /// Stops it.
    PStatus stop();
    /// Takes this number of frames, up to 65534, or endlessly with 65535, if they are triggered by
    /// software; 0 ends a run. Fails with the range for other numbers.
    PStatus fire(int frames);

private:
    Outcome link(PDevice* device);
    PStatus prepare();
    PStatus startStream();
    PStatus prepareTrigger();
    PStatus applyAll();
    PStatus setNamedMode();
    void onAdded(PDevice* device);
    void onRemoved(PDevice* device);
    void release();
    QString silence() const;

    const std::shared_ptr<PGstFrameQueue> m_queue;
    PGstOptions m_options;
    QString m_id;
    PGstSettings m_later; ///< applied since it was opened
    PDeviceMode m_mode;   ///< set by setMode(); else without a size
    PDevice* m_device = nullptr;
    std::unique_ptr<PTriggerControl> m_trigger;
    bool m_isStarted = false; ///< by the pipeline, whether the camera is present or not
};
