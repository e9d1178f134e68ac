// SPDX-License-Identifier: MIT
#include <reliability/RaceHost.h>

#include <reliability/DelayHook.h>

#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTDeviceRegister.h>
#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <PCd/profile/PDeviceProfileValues.h>
#include <PCd/property/PDeviceProperty.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace {

/// Takes its time on the camera's thread.
class SlowSink : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame& /*frame*/, Kind /*kind*/) override {
        DelayHook::nap();
        return true;
    }
};

void runEvents() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

RaceHost::RaceHost(std::uint64_t seed)
    : m_random(std::mt19937::result_type(seed)) {
    load();
}

RaceHost::~RaceHost() {
    unload();
}

void RaceHost::load() {
    m_manager = std::make_unique<PDeviceManager>();
    connect(m_manager.get(), &PDeviceManager::deviceAdded, this, &RaceHost::onDeviceAdded);
    connect(m_manager.get(), &PDeviceManager::deviceRemoved, this, &RaceHost::onDeviceRemoved);
    auto* const made = new PTDeviceRegister;
    for (QTimer* timer : made->findChildren<QTimer*>())
        timer->setInterval(int(draw(2)));
    m_manager->addRegister(made);
}

void RaceHost::unload() {
    if (draw(2) == 0)
        m_panel.reset();
    m_manager.reset();
    m_panel.reset();
    runEvents();
}

void RaceHost::share(PDevice* device) {
    const std::lock_guard lock(m_mutex);
    m_shared = device;
}

void RaceHost::onDeviceAdded(PDevice* device) {
    m_device = device;
    m_isPulling = false;
    device->link();
    connect(device, &PDevice::imageChanged, this, [] { DelayHook::nap(); });
    if (auto* const camera = qobject_cast<PTDevice*>(device); camera && draw(2) == 0)
        Toupcam_put_ExpoCallback(camera->sdkHandle(), cbExposure, camera);
    share(device);
}

void RaceHost::onDeviceRemoved(PDevice* device) {
    if (!device->frameLedger().isBalanced())
        m_areBalanced = false;
    if (device == m_device)
        share(nullptr);
}

void RaceHost::act() {
    const unsigned action = draw(20);
    if (action < 8)
        return runEvents();
    if (action == 8)
        return m_manager->updateDevices();
    if (action == 9 && draw(4) == 0) {
        unload();
        return load();
    }
    if (m_device && !m_device->isGone())
        actOnCamera(m_device);
}

void RaceHost::actOnCamera(PDevice* device) {
    switch (draw(10)) {
    case 0:
    case 1:
    case 2:
        if (!m_isPulling)
            device->startStream();
        break;
    case 3:
        device->stopStream();
        break;
    case 4:
        device->triggerStillCapture();
        break;
    case 5:
        togglePanel(device);
        break;
    case 6:
        togglePull(device);
        break;
    case 7:
        if (draw(3) == 0)
            destroy(device);
        break;
    default:
        changeSomething(device);
    }
}

void RaceHost::changeSomething(PDevice* device) {
    const QList<PDeviceMode> modes = device->getSupportModes();
    if (!modes.isEmpty() && draw(3) == 0) {
        device->setMode(modes.at(draw(unsigned(modes.size()))));
        return;
    }
    const QList<PDeviceProperty*> properties = device->supportProperties();
    PDeviceProperty* const property = properties.at(draw(unsigned(properties.size())));
    if (draw(2) == 0)
        property->updateValueFromDevice(draw(2) == 0);
    else
        property->setValue(property->valueInner());
    PDeviceProfileValues::ofDevice(*device);
}

void RaceHost::togglePanel(PDevice* device) {
    if (m_panel) {
        m_panel.reset();
        return;
    }
    m_panel.reset(device->createPropertiesWidget(nullptr));
    m_panel->show();
}

void RaceHost::togglePull(PDevice* device) {
    auto* const camera = qobject_cast<PTDevice*>(device);
    if (device->isStreaming())
        return;
    if (std::exchange(m_isPulling, !m_isPulling)) {
        Toupcam_Stop(camera->sdkHandle());
        camera->pullThread()->stopThread();
        return;
    }
    Toupcam_StartPullModeWithCallback(camera->sdkHandle(), cbEvent, camera);
    camera->pullThread()->startThread();
}

void RaceHost::destroy(PDevice* device) {
    share(nullptr);
    if (!device->frameLedger().isBalanced())
        m_areBalanced = false;
    delete device;
}

void RaceHost::useFromAnyThread(std::mt19937& random) {
    const std::lock_guard lock(m_mutex);
    if (!m_shared)
        return;
    const auto sink = std::make_shared<SlowSink>();
    switch (random() % 5) {
    case 0:
        m_shared->addFrameSink(sink);
        DelayHook::nap();
        m_shared->removeFrameSink(sink);
        break;
    case 1:
        m_shared->newestFrame();
        break;
    case 2:
        if (!m_shared->frameLedger().isBalanced())
            m_areBalanced = false;
        break;
    case 3:
        m_shared->limitLiveFrames(random() % 2 == 0 ? std::optional<quint64>(3) : std::nullopt);
        m_shared->setFrameByteLimit(random() % 2 == 0 ? 0 : PDevice::defaultFrameByteLimit);
        break;
    default:
        // To the device's thread, as other threads may change settings in no other way.
        if (PDeviceProperty* const property = m_shared->getProperty("autoexpottime"))
            QMetaObject::invokeMethod(property, "updateValueFromDevice", Qt::QueuedConnection);
    }
}
