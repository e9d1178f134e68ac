// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/camera/PCameraSdk.h>
#include <apps/common/camera/PSdkTrace.h>

#include <PCd/device/PDeviceManager.h>
#include <PCd/plugin/PPluginLoader.h>

class PDeviceRegister;

/// The cameras of a program: SDK, plugins, devices, loaded in this order. The main thread.
class PCameraHost {
public:
    PCameraHost() = default;
    /// Deletes everything but the library.
    ~PCameraHost();
    PCameraHost(const PCameraHost&) = delete;
    PCameraHost& operator=(const PCameraHost&) = delete;

    /// See PCameraSdk::load().
    PStatus loadSdk(const QString& choice);
    /// Sets the scene file of the simulated cameras. Fails with the error in it, or if the SDK is
    /// not simulated.
    PStatus loadScene(const QString& file);
    /// Records the SDK calls of the plugins from now on, see PSdkTrace::start(). After loadSdk()
    /// and before loadPlugins().
    PStatus startTrace(const PSdkTrace::Target& target) { return m_trace.start(m_sdk, target); }
    /// Fails if the trace that was started is not complete.
    PStatus checkTrace() const { return m_trace.check(); }
    /// Loads the plugins of these folders and of the usual ones. Fails if there is none; failures
    /// of single plugins are in pluginFailures().
    PStatus loadPlugins(const QStringList& paths);
    const QList<PPluginLoader::Failure>& pluginFailures() const { return m_failures; }
    /// The files of the plugins that were loaded.
    const QStringList& pluginFiles() const { return m_files; }
    /// Finds the cameras of the plugins, and follows them from now on.
    void findCameras();

    const PCameraSdk& sdk() const { return m_sdk; }
    PDeviceManager& manager() { return m_manager; }
    const PDeviceManager& manager() const { return m_manager; }
    /// The identity of a camera, simulated if the loaded SDK is.
    PCameraIdentity identify(const PDevice* device) const;

private:
    PCameraSdk m_sdk;
    PSdkTrace m_trace;
    QStringList m_files;
    QList<PPluginLoader::Failure> m_failures;
    QList<PDeviceRegister*> m_found; ///< until the manager owns them
    PDeviceManager m_manager;
};
