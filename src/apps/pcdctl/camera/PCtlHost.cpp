// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/program/PTranslations.h>

namespace {

PCtlOutcome toHostOutcome(const PStatus& status) {
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

} // namespace

PCtlOutcome PCtlHost::start(const PCtlOptions& options) {
    PCtlOutcome outcome = startSdk(options);
    if (outcome.isDone() && !options.trace.isEmpty())
        outcome = toHostOutcome(m_cameras.startTrace({options.trace, options.traceFrames}));
    return outcome.isDone() ? loadPlugins(options) : outcome;
}

PCtlOutcome PCtlHost::startSdk(const PCtlOptions& options) {
    const PStatus loaded = m_cameras.loadSdk(options.sdk);
    // Only a library or a scene that the user wants is missed: other plugins may need no SDK.
    if (!loaded.isOk() && (!sdk().isFallback() || !options.scene.isEmpty()))
        return PCtlOutcome::failed(loaded.reason());
    if (sdk().isFallback()) {
        PCtlOutput::printMessage(
            loaded.isOk()
                ? u"this system has no camera SDK (libtoupcam.so): the cameras are simulated"_qs
                : loaded.reason());
    }
    if (options.scene.isEmpty())
        return {};
    const PStatus scene = m_cameras.loadScene(options.scene);
    return scene.isOk() ? PCtlOutcome() : PCtlOutcome::wrongUsage(scene.reason());
}

PCtlOutcome PCtlHost::loadPlugins(const PCtlOptions& options) {
    const PStatus loaded = m_cameras.loadPlugins(options.pluginPaths);
    for (const PPluginLoader::Failure& failure : m_cameras.pluginFailures()) {
        PCtlOutput::printMessage(
            u"plugin \"%1\" not loaded: %2"_qs.arg(failure.path, failure.reason));
    }
    if (!loaded.isOk())
        return PCtlOutcome::failed(loaded.reason());
    // After the plugins are loaded, and before their devices create their titles.
    PTranslations::install(PTranslations::language(options.language));
    m_cameras.findCameras();
    return {};
}

PCtlOutcome PCtlHost::checkTrace() const {
    return toHostOutcome(m_cameras.checkTrace());
}

PCtlHost::Choice PCtlHost::choose(const QString& camera) const {
    const PDeviceManager::Selection selection = m_cameras.manager().select(camera);
    if (selection.device != nullptr)
        return {selection.device, {}};
    return {nullptr, PCtlOutcome::notFound(selection.problem)};
}
