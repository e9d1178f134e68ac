// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraHost.h>
#include <apps/common/camera/PCameraIdentity.h>

#include <PCore/PStatus.h>

#include <QSet>
#include <QString>

#include <memory>

class PDevice;

/// The cameras of the process, which all elements and the list of devices share: SDK and plugins
/// are loaded once. Qt's thread (PQtLoop).
class PGstHost {
public:
    /// The host of the process.
    static PGstHost& instance();

    /// Loads SDK, scene and plugins, and finds the cameras; the first call decides which. Fails
    /// with the reason; if they are loaded, also for another SDK or scene. Empty texts: whatever is
    /// loaded; else the SDK is that of the environment variable PCD_GST_SDK, else "auto".
    PStatus prepare(const QString& sdk, const QString& scene);
    /// What the user should know about the SDK; empty if nothing.
    const QString& note() const { return m_note; }

    /// The devices. Only after prepare() succeeded.
    PDeviceManager& manager() { return m_cameras->manager(); }
    bool isPrepared() const { return m_cameras != nullptr; }
    /// Likewise.
    PCameraIdentity identify(const PDevice& device) const { return m_cameras->identify(&device); }

    /// Reserves a camera for one element; false if another one has it.
    bool claim(PDevice* device);
    /// Returns it.
    void release(PDevice* device) { m_claimed.remove(device); }

    /// Closes all cameras. The host can be prepared again.
    void close();

private:
    PStatus load(const QString& sdk, const QString& scene);

    QString m_sdk;
    QString m_scene;
    QString m_note;
    QSet<PDevice*> m_claimed;
    std::unique_ptr<PCameraHost> m_cameras;
};
