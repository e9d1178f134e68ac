// SPDX-License-Identifier: MIT
#include <apps/common/camera/PCameraHost.h>

#include <apps/common/crash/PCrashReport.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>

#include <utility>

PCameraHost::~PCameraHost() {
    qDeleteAll(m_found);
}

PStatus PCameraHost::loadSdk(const QString& choice) {
    const PStatus status = m_sdk.load(choice);
    PCrashReport::setSdk(status.isOk()
                             ? u"%1, version %2%3"_qs.arg(
                                   m_sdk.path(), m_sdk.version(),
                                   m_sdk.isSimulated() ? u", simulated cameras"_qs : QString())
                             : u"none: "_qs + status.reason());
    return status;
}

PStatus PCameraHost::loadScene(const QString& file) {
    if (m_sdk.isSimulated())
        return m_sdk.loadScene(file);
    return PStatus::failure(
        u"--scene needs simulated cameras, but \"%1\" is not a simulated SDK: expected --sdk sim"_qs
            .arg(m_sdk.path()));
}

PStatus PCameraHost::loadPlugins(const QStringList& paths) {
    PPluginLoader loader;
    for (const QString& path : paths)
        loader.addSearchPath(path);
    m_found = loader.load();
    m_failures = loader.failures();
    m_files = loader.loadedFiles();
    if (m_found.isEmpty()) {
        return PStatus::failure(
            u"no camera plugin found; looked in %1"_qs.arg(loader.searchPaths().join(u", "_qs)));
    }
    return PStatus::Ok;
}

void PCameraHost::findCameras() {
    for (PDeviceRegister* deviceRegister : std::exchange(m_found, {}))
        m_manager.addRegister(deviceRegister);
}

PCameraIdentity PCameraHost::identify(const PDevice* device) const {
    return PCameraIdentity::of(device, m_sdk.isSimulated());
}
