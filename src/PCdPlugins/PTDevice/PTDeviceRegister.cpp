// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTDeviceRegister.h>

#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCore/PFaultStack.h>

#include <QSet>
#include <QTimer>
#include <QtPlugin>

#include <algorithm>
#include <exception>
#include <memory>
#include <mutex>

// Hosts compare this byte of the plugin's metadata; compiler flags must not change it.
static_assert(QPluginMetaData::archRequirements() == 1,
              "the plugin is built for the x86-64 baseline and with QT_NO_DEBUG");

namespace {

constexpr int rescanDelayMs = 1000;
constexpr auto aliveDevicesText = "virtual QList<PDevice *> PTDeviceRegister::aliveDevices()";

QString toCameraId(const char* id) {
    return QString::fromLatin1(id, qsizetype(qstrnlen(id, sizeof ToupcamDeviceV2::id)));
}

/// The existing registers. A register is unregistered from the SDK when it is destroyed, but a
/// callback may be in progress at that moment.
struct LiveRegisters {
    std::mutex mutex; // read on the SDK's hot-plug thread, changed on the registers' thread
    QSet<PTDeviceRegister*> all;
};

LiveRegisters& liveRegisters() {
    // Never destroyed: the plugin's root object may be deleted after this file's static variables.
    static LiveRegisters* const registers = new LiveRegisters;
    return *registers;
}

/// Opens the camera and builds its properties; null, with the camera closed, if either fails.
std::unique_ptr<PTDevice> openDevice(const ToupcamDeviceV2& record) {
    try {
        std::unique_ptr<PTDevice> device(PTDevice::create(record));
        if (device)
            device->supportProperties();
        return device;
    } catch (const std::exception& error) {
        ptLog(aliveDevicesText, __FILE__, __LINE__, PLogLevel::Error)
            << "Exception while opening a camera:" << error.what();
        return nullptr;
    }
}

} // namespace

PTDeviceRegister::PTDeviceRegister() {
    setId("ptregisterid");
    rescanTimer = new QTimer(this);
    rescanTimer->setSingleShot(true);
    rescanTimer->setInterval(rescanDelayMs);
    connect(rescanTimer, &QTimer::timeout, this, &PDeviceRegister::updateDevices);
    {
        const std::lock_guard lock(liveRegisters().mutex);
        liveRegisters().all.insert(this);
    }
    Toupcam_HotPlug(hotPlugCallback, this);
}

PTDeviceRegister::~PTDeviceRegister() {
    Toupcam_HotPlug(nullptr, nullptr);
    // After this, a callback in progress has either posted its call or does not find the register.
    const std::lock_guard lock(liveRegisters().mutex);
    liveRegisters().all.remove(this);
}

void PTDeviceRegister::hotPlugCallback(void* context) {
    PFaultStack::giveThread();
    if (context == nullptr)
        return;
    const std::lock_guard lock(liveRegisters().mutex);
    auto* const self = static_cast<PTDeviceRegister*>(context);
    if (!liveRegisters().all.contains(self))
        return;
    try {
        // From the SDK's thread to the register's: only there may the timer be touched.
        QMetaObject::invokeMethod(self, &PTDeviceRegister::scheduleRescan, Qt::QueuedConnection);
    } catch (const std::exception&) {
        return; // no memory for the event; the next change posts another
    }
}

void PTDeviceRegister::scheduleRescan() {
    if (rescanTimer != nullptr)
        rescanTimer->start();
}

PTDevice* PTDeviceRegister::findByCameraId(const QString& cameraId) const {
    for (PDevice* device : devices()) {
        auto* const camera = qobject_cast<PTDevice*>(device);
        if (camera != nullptr && toCameraId(camera->sdkCameraId()) == cameraId)
            return camera;
    }
    return nullptr;
}

QList<PDevice*> PTDeviceRegister::aliveDevices() {
    ToupcamDeviceV2 records[TOUPCAM_MAX] = {};
    const unsigned count = std::min(Toupcam_EnumV2(records), unsigned(TOUPCAM_MAX));
    QList<PDevice*> alive;
    alive.reserve(int(count));
    for (unsigned i = 0; i < count; ++i) {
        if (PDevice* const device = findOrOpenDevice(records[i]))
            alive.append(device);
    }
    return alive;
}

PDevice* PTDeviceRegister::findOrOpenDevice(const ToupcamDeviceV2& record) {
    const QString cameraId = toCameraId(record.id);
    if (PTDevice* const known = findByCameraId(cameraId))
        return known;
    std::unique_ptr<PTDevice> device = openDevice(record);
    if (!device) {
        ptLog(aliveDevicesText, __FILE__, 172, PLogLevel::Warning)
            << "PTDeviceRegister: failed to open device, skipping" << cameraId;
        return nullptr;
    }
    connect(device.get(), &PTDevice::disconnected, this, &PTDeviceRegister::removeDeviceWithId);
    ptLog(aliveDevicesText, __FILE__, 186)
        << "PTDeviceRegister: new device" << device->deviceId(false);
    return device.release();
}

void PTDeviceRegister::removeDeviceWithId(const QByteArray& id) {
    if (PDevice* const device = findDevice(id))
        removeDevice(device);
}

#include "moc_PTDeviceRegister.cpp"
