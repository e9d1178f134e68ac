// SPDX-License-Identifier: MIT
#include "PCtlHost.h"

#include "PCtlOutput.h"

#include <apps/common/PTranslations.h>

#include <PCd/PDevice.h>
#include <PCd/PDeviceRegister.h>
#include <PCd/PPluginLoader.h>

PCtlOutcome PCtlHost::start(const PCtlOptions& options) {
    const PCtlOutcome outcome = startSdk(options);
    return outcome.isDone() ? loadPlugins(options) : outcome;
}

PCtlOutcome PCtlHost::startSdk(const PCtlOptions& options) {
    const PStatus loaded = m_sdk.load(options.sdk);
    if (!loaded.isOk())
        return PCtlOutcome::failed(loaded.reason());
    if (m_sdk.isFallback()) {
        PCtlOutput::printMessage(
            u"this system has no camera SDK (libtoupcam.so): the cameras are simulated"_qs);
    }
    if (options.scene.isEmpty())
        return {};
    if (!m_sdk.isSimulated()) {
        return PCtlOutcome::wrongUsage(
            u"--scene needs simulated cameras, but \"%1\" is no simulated SDK: expected --sdk sim"_qs
                .arg(m_sdk.path()));
    }
    const PStatus scene = m_sdk.loadScene(options.scene);
    return scene.isOk() ? PCtlOutcome() : PCtlOutcome::wrongUsage(scene.reason());
}

PCtlOutcome PCtlHost::loadPlugins(const PCtlOptions& options) {
    PPluginLoader loader;
    for (const QString& path : options.pluginPaths)
        loader.addSearchPath(path);
    const QList<PDeviceRegister*> registers = loader.load();
    for (const PPluginLoader::Failure& failure : loader.failures()) {
        PCtlOutput::printMessage(
            u"plugin \"%1\" not loaded: %2"_qs.arg(failure.path, failure.reason));
    }
    if (registers.isEmpty()) {
        return PCtlOutcome::failed(
            u"no camera plugin found; looked in %1"_qs.arg(loader.searchPaths().join(u", "_qs)));
    }
    // With the plugins in, and before their devices make their titles.
    PTranslations::install(PTranslations::language(options.language));
    for (PDeviceRegister* deviceRegister : registers)
        m_manager.addRegister(deviceRegister);
    return {};
}

PCameraIdentity PCtlHost::identityOf(const PDevice* device) const {
    return PCameraIdentity::of(device, m_sdk.isSimulated());
}

PCtlHost::Choice PCtlHost::choose(const QString& camera) const {
    const PDeviceManager::Selection selection = m_manager.select(camera);
    if (selection.device != nullptr)
        return {selection.device, {}};
    return {nullptr, PCtlOutcome::notFound(selection.problem)};
}
