// SPDX-License-Identifier: MIT
#pragma once

#include <devices/CameraScene.h>

#include <apps/common/camera/PCameraHost.h>

/// A host with the plugin and its simulated cameras, which are opened and closed as often as
/// needed. The main thread; one at a time.
class OpenCameras {
public:
    /// Loads SDK and plugin; there are no cameras yet. Throws std::runtime_error if one is missing.
    OpenCameras();
    ~OpenCameras();
    OpenCameras(const OpenCameras&) = delete;
    OpenCameras& operator=(const OpenCameras&) = delete;

    /// Closes all cameras and replaces them by these, which are not yet opened.
    void replace(const QJsonArray& cameras);
    /// The same with this many cameras, plugged in or not.
    void replace(int cameras, bool arePlugged = true);
    /// Finds the cameras that are plugged in and opens them, in the one call that hosts make.
    void find();
    /// The same, and does with each what a program does: links it, and takes its groups.
    void open();
    /// Closes the devices; their cameras stay plugged in.
    void close();
    /// Runs the event loop until nothing is left to do, not even what is done a second after the
    /// plugging.
    void settle();

    QList<PDevice*> devices() const { return m_host.manager().devices(); }
    /// A function of the loaded SDK, as a pointer of its type.
    template <typename Function>
    Function* sdkFunction(const char* name) const {
        return reinterpret_cast<Function*>(findFunction(name));
    }

private:
    void* findFunction(const char* name) const;

    CameraScene m_scene;
    PCameraHost m_host;
};
