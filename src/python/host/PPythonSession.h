// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/camera/PExposureWatch.h>
#include <apps/common/camera/PSettingNames.h>

#include <PCd/device/PDevice.h>

#include <PCore/PStatus.h>

#include <QObject>
#include <QPointer>

#include <chrono>
#include <memory>

/// One camera that Python has opened, until it is closed or unplugged. All functions raise
/// "ClosedError" or "UnpluggedError" when it is no longer open.
/// @internal They throw PPythonError. The thread of PPythonHost; none needs the interpreter's lock,
/// and what may take long is called without it.
class PPythonSession : public QObject {
public:
    /// Opens a camera by its index (from 0), its id, or the beginning of its id if no other camera
    /// has the same; an empty text is the first one. "NoCameraError" lists the cameras there are.
    /// @internal See PDeviceManager::select().
    static std::shared_ptr<PPythonSession> open(const QString& camera);
    /// Closes.
    ~PPythonSession() override;

    /// The camera; throws if it is no longer open.
    PDevice& device() const;
    /// False once it was closed or unplugged.
    bool isOpen() const { return m_device != nullptr && m_device->isLinked(); }
    bool isUnplugged() const { return m_isUnplugged; }
    /// Throws if the status is a failure: "UnpluggedError" if the camera no longer answers, which
    /// may be seen before its device is removed, else this type.
    void check(const PStatus& status, const char* type = "Error") const;
    /// Stops and closes the camera; its frames stay. Nothing the second time.
    void close();

    /// Id, model and serial number, and whether it is simulated; also when it is closed.
    const PCameraIdentity& identity() const { return m_identity; }
    /// The choices of its settings, also when it is no longer open.
    const PSettingNames& names() const { return m_names; }
    /// The ledger of the frames; for an unplugged camera its last state. Does not throw.
    PFrameLedger ledger() const;

    /// Throws "BusyError" if a stream is running.
    void checkIdle() const;
    /// Adds the sink and starts the stream, in which about this number of frames may wait.
    /// Throws as checkIdle() does.
    void startStream(const std::shared_ptr<PFrameSink>& sink, std::size_t frames);
    /// Stops the stream and removes the sink; nothing if it was stopped before.
    PStatus stopStream(const std::shared_ptr<PFrameSink>& sink);
    bool isStreaming() const { return m_sink != nullptr; }
    /// The longest time without a frame that is not a failure, from the present exposure time.
    std::chrono::milliseconds longestWait() const;

private:
    PPythonSession(PDevice* device, PCameraIdentity identity);
    void link();
    void forget();

    QPointer<PDevice> m_device;
    const PCameraIdentity m_identity;
    PSettingNames m_names;
    std::unique_ptr<PExposureWatch> m_exposure;
    std::shared_ptr<PFrameSink> m_sink; ///< of the running stream
    PFrameLedger m_lastLedger;
    bool m_isUnplugged = false;
};
