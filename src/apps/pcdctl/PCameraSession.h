// SPDX-License-Identifier: MIT
#pragma once

#include "PCtlOutcome.h"
#include "PInterruptibleLoop.h"

#include <PCd/PDevice.h>
#include <PCd/PDeviceManager.h>

/// One camera in use, from linking to unlinking, which may be unplugged at any moment meanwhile.
/// The main thread.
class PCameraSession : public QObject {
    Q_OBJECT

public:
    PCameraSession(PDeviceManager& manager, PDevice* device);
    /// Closes.
    ~PCameraSession() override;

    /// Links the camera and sets the mode with this id or name (empty: as it is). A mode it does
    /// not have is wrong usage.
    PCtlOutcome open(const QString& mode);
    /// Stops the stream and waits until the frames on their way have arrived, then unlinks. Fails
    /// if the camera would not stop.
    PStatus close();

    /// Null once the camera was unplugged.
    PDevice* device() const { return m_device; }
    bool isUnplugged() const { return m_device == nullptr; }
    /// The account of the frames; of an unplugged camera, as it was then.
    PFrameLedger ledger() const;
    /// The mode in use; of an unplugged camera, that of open().
    const PDeviceMode& mode() const { return m_mode; }

    bool isInterrupted() const { return m_loop.isInterrupted(); }
    /// Waits as the loop does, until the predicate holds or the camera is unplugged; true only if
    /// it holds.
    bool waitFor(const std::function<bool()>& predicate,
                 std::optional<std::chrono::milliseconds> atMost = std::nullopt);

    /// Why a waitFor() for this ("a still picture") ended without it.
    QString reasonWithout(const QString& what) const;

private:
    PCtlOutcome setMode(const QString& wanted);

    PInterruptibleLoop m_loop;
    PDevice* m_device;
    QString m_id;
    PDeviceMode m_mode;
    PFrameLedger m_lastLedger;
};
