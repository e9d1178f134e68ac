// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstHost.h>

#include <gstreamer/camera/PGstLog.h>
#include <gstreamer/camera/PQtLoop.h>

namespace {

PStatus checkSame(const char* property, const QString& loaded, const QString& requested) {
    if (requested.isEmpty() || requested == loaded)
        return PStatus::Ok;
    return PStatus::failure(u"this process already uses %1=\"%2\": expected the same or none, got "
                            "\"%3\""_qs.arg(QString::fromLatin1(property), loaded, requested));
}

QString usualSdk() {
    const QString sdk = qEnvironmentVariable("PCD_GST_SDK");
    return sdk.isEmpty() ? u"auto"_qs : sdk;
}

} // namespace

PGstHost& PGstHost::instance() {
    // Never deleted: at exit Qt's thread still exists. Its cameras are closed before.
    static PGstHost* const host = new PGstHost;
    return *host;
}

PStatus PGstHost::prepare(const QString& sdk, const QString& scene) {
    if (isPrepared()) {
        const PStatus status = checkSame("sdk", m_sdk, sdk);
        return status.isOk() ? checkSame("scene", m_scene, scene) : status;
    }
    m_sdk = sdk.isEmpty() ? usualSdk() : sdk;
    m_scene = scene;
    PGstLog::install();
    m_cameras = std::make_unique<PCameraHost>();
    const PStatus status = load(m_sdk, m_scene);
    if (status.isOk())
        PQtLoop::setFarewell([] { instance().close(); });
    else
        m_cameras.reset();
    return status;
}

PStatus PGstHost::load(const QString& sdk, const QString& scene) {
    const PStatus loaded = m_cameras->loadSdk(sdk);
    const bool isFallback = m_cameras->sdk().isFallback();
    // Plugins of other cameras may need no SDK.
    if (!loaded.isOk() && (!isFallback || !scene.isEmpty()))
        return loaded;
    m_note.clear();
    if (isFallback)
        m_note = loaded.isOk() ? u"this system has no camera SDK: the cameras are simulated"_qs
                               : loaded.reason();
    if (!scene.isEmpty()) {
        const PStatus status = m_cameras->loadScene(scene);
        if (!status.isOk())
            return status;
    }
    const PStatus plugins = m_cameras->loadPlugins({});
    if (plugins.isOk())
        m_cameras->findCameras();
    return plugins;
}

bool PGstHost::claim(PDevice* device) {
    if (m_claimed.contains(device))
        return false;
    m_claimed.insert(device);
    return true;
}

void PGstHost::close() {
    m_cameras.reset();
    m_claimed.clear();
}
