// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>
#include <apps/pcdctl/cli/PInterruptibleLoop.h>

#include <apps/common/camera/PExposureWatch.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>

#include <memory>

/// One camera in use, from linking to unlinking; it may be unplugged at any moment in between.
/// The main thread.
class PCameraSession : public QObject {
    Q_OBJECT

public:
    PCameraSession(PDeviceManager& manager, PDevice* device);
    /// Closes.
    ~PCameraSession() override;

    /// Links the camera and prepares it as the options say: mode, profile, settings. A mode or
    /// setting that it does not have is wrong usage; a profile or setting that was not applied is a
    /// failure.
    PCtlOutcome open(const PCtlOptions& options);
    /// Stops the stream and waits until the frames on their way have arrived, then unlinks. Fails
    /// if the camera would not stop.
    PStatus close();

    /// Reads the camera's exposure now and keeps it up to date until close(), because frames are
    /// stamped with it, and other settings and automatic exposure change it.
    void watchExposure();

    /// Starts the stream and waits for its first frame. Fails if it does not arrive in time (30 s
    /// by default).
    PCtlOutcome startLive(std::optional<std::chrono::milliseconds> atMost);
    /// Stops the stream and waits until the frames on their way have arrived.
    PStatus stopLive();
    /// The default timeout for a response of the camera in a stream of startLive().
    std::chrono::milliseconds longestAnswer() const;

    /// Null once the camera was unplugged.
    PDevice* device() const { return m_device; }
    bool isUnplugged() const { return m_device == nullptr; }
    const QString& cameraId() const { return m_id; }
    /// The ledger of the frames; for an unplugged camera, its last state.
    PFrameLedger ledger() const;
    /// The mode in use; for an unplugged camera, the one after open().
    const PDeviceMode& mode() const { return m_mode; }

    bool isInterrupted() const { return m_loop.isInterrupted(); }
    /// Waits as the loop does, until the predicate is true or the camera is unplugged; returns true
    /// only if the predicate is.
    bool waitFor(const std::function<bool()>& predicate,
                 std::optional<std::chrono::milliseconds> atMost = std::nullopt);

    /// The frames that were lost on their way, by outcome: "3 frames dropped: no memory"; empty if
    /// none was.
    QString losses() const;

    /// The outcome of a work that could not read everything from the camera: that it no longer
    /// answers, else this reason. Done if the status is.
    PCtlOutcome readOutcome(const PStatus& read) const;

    /// The reason why a waitFor() for this ("a still") ended without it.
    QString reasonWithout(const QString& what) const;

private:
    PCtlOutcome setMode(const QString& requested);
    PCtlOutcome prepare(const PCtlOptions& options);

    PInterruptibleLoop m_loop;
    PDevice* m_device;
    QString m_id;
    PDeviceMode m_mode;
    PFrameLedger m_lastLedger;
    std::chrono::milliseconds m_firstFrameTook{0};
    std::unique_ptr<PExposureWatch> m_exposure;
};
