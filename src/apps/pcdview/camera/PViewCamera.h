// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/camera/PExposureWatch.h>
#include <apps/pcdview/camera/PExposureCountdown.h>
#include <apps/pcdview/camera/PFramePace.h>
#include <apps/pcdview/camera/PSettingsRestorer.h>

#include <PCd/device/PDevice.h>

#include <PCore/PStatus.h>

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class PDeviceProfilePlan;

/// A camera in the viewer, which stays while it is unplugged and comes back. The device's thread,
/// which is the GUI thread.
class PViewCamera : public QObject {
    Q_OBJECT

public:
    /// Whether live frames arrive, and if not, why.
    enum class State {
        Live,
        Paused,
        Unplugged,
        NotOpen ///< it has not been opened yet, or could not be
    };

    /// Tests pass a clock other than the system's, for long exposures.
    explicit PViewCamera(PCameraIdentity identity, QObject* parent = nullptr,
                         PExposureCountdown::Now now = &PExposureCountdown::Clock::now);
    /// Closes the camera.
    ~PViewCamera() override;

    /// Opens this device and starts its stream. A camera that was open before gets its settings
    /// back; those that could not be restored are in notes(). Fails with the reason.
    PStatus attach(PDevice* device);
    /// The device, which may be one that could not be opened, is about to be removed: its last
    /// picture and its ledger stay.
    void detach();
    /// Starts or stops the stream. Fails with the reason.
    PStatus setLive(bool live);
    PStatus setMode(const PDeviceMode& mode);
    /// Applies a profile to the camera, which must be plugged in.
    PDeviceProfileReport apply(PDeviceProfilePlan& plan);
    /// Whether frames can be taken now. Fails with the reason.
    PStatus readiness() const;
    /// Requests a still, which arrives with snapshotTaken(). Fails with the reason.
    PStatus takeSnapshot();

    const PCameraIdentity& identity() const { return m_identity; }
    /// Null while it is unplugged or not open.
    PDevice* device() const { return m_device; }
    State state() const;
    /// True while frames come by triggers only, and the number of pictures since then, including
    /// the one being emitted. Any camera with the role PRole::Triggered.
    bool isTriggered() const { return m_isTriggered; }
    quint64 triggeredPictures() const { return m_triggeredPictures; }
    /// True where the next of them waits for the user or for a signal from outside: not during a
    /// run whose pictures the program itself triggers.
    bool isAwaitingTriggers() const;
    /// True while it is being recorded, or its recording's files are being completed.
    bool isRecorded() const { return m_isRecorded; }
    void setRecorded(bool recorded);
    /// What the user should know about the last attach().
    const QStringList& notes() const { return m_notes; }
    /// The newest frame that was shown.
    const PDeviceFrame& frame() const { return m_frame; }
    /// The ledger of the frames since it was opened or came back.
    PFrameLedger ledger() const;
    /// How often snapshotTaken() was emitted in that time, including one that is being emitted.
    quint64 pictures() const { return m_pictures; }
    double framesPerSecond() const;
    /// Whether a triggered run is in progress; its panel reports it.
    void setRunning(bool running);
    /// The time until the next picture of a long exposure; nothing if none is expected.
    std::optional<std::chrono::seconds> untilNextPicture() const;
    double megabytesPerSecond() const; ///< million bytes a second, of pixels

signals:
    /// state(), isRecorded() or isAwaitingTriggers() may have changed.
    void stateChanged();
    /// The device has another mode, or is another device.
    void modeChanged();
    /// A frame to show: the newest, at most about 30 per second.
    void frameChanged(const PDeviceFrame& frame);
    /// A still or a triggered frame arrived. Live frames that a panel forwards as snapshots
    /// are left out.
    void snapshotTaken(const PDeviceFrame& frame);

private:
    void connectDevice();
    PStatus open();
    void leaveDevice();
    void restoreSettings();
    void followTrigger();
    void takePicture(const PDeviceFrame& frame);
    void countFrame(const PImage& image);
    void showNewest();

    PCameraIdentity m_identity;
    const PExposureCountdown::Now m_now;
    QPointer<PDevice> m_device;
    PSettingsRestorer m_memory;
    std::unique_ptr<PExposureWatch> m_exposure;      ///< while there is a device
    std::unique_ptr<PExposureCountdown> m_countdown; ///< likewise
    PDeviceFrame m_frame;
    PFrameLedger m_lastLedger;
    QStringList m_notes;
    PFramePace m_pace;
    QTimer m_showSoon;
    std::chrono::steady_clock::time_point m_lastShown;
    State m_stateWithoutDevice = State::NotOpen;
    bool m_wantsLive = true;
    bool m_isTriggered = false;
    bool m_isRunning = false;
    bool m_isRecorded = false;
    quint64 m_pictures = 0;
    quint64 m_triggeredPictures = 0;
    /// When the camera was last taken out of triggered capture; none while it is still in it.
    std::optional<std::chrono::steady_clock::time_point> m_triggersEnd;
};
