// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceManager.h>

#include <QList>

class PDevice;

/// A host with the plugin and the cameras of the stub SDK, as a program would have it: the plugin
/// is loaded by its file. The main thread, with a QCoreApplication; one object at a time.
class StubHost {
public:
    /// Loads the plugin, which finds and opens this number of cameras. Throws std::runtime_error if
    /// the plugin cannot be loaded, or has other cameras.
    explicit StubHost(unsigned cameraCount = 1);

    /// The first camera.
    PDevice& device() const { return *m_manager.devices().constFirst(); }
    QList<PDevice*> devices() const { return m_manager.devices(); }
    PDeviceManager& manager() { return m_manager; }

    /// Links the first camera and starts its stream. Throws std::runtime_error if it refuses.
    void startStream();

private:
    PDeviceManager m_manager;
};
