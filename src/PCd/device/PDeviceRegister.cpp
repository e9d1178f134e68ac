// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceRegister.h>

#include <PCd/PMetaTypes.h>
#include <PCd/device/PDevice.h>

#include <PLog/PLog.h>

#include <QPointer>
#include <QScopeGuard>

#include <algorithm>
#include <exception>

namespace {

void logFailure(const char* reason) {
    PLog::logStream(u"PCd"_qs, QString::fromLatin1(Q_FUNC_INFO), QString::fromLatin1(__FILE__),
                    __LINE__, PLogLevel::Error)
        << "Looking for devices failed:" << reason;
}

/// The devices without null entries and duplicates.
QList<PDevice*> eachOnce(const QList<PDevice*>& devices) {
    QList<PDevice*> once;
    for (PDevice* device : devices) {
        if (device != nullptr && !once.contains(device))
            once.append(device);
    }
    return once;
}

} // namespace

PDeviceRegister::PDeviceRegister() {
    registerPCdMetaTypes();
}

PDeviceRegister::~PDeviceRegister() {
    // At once, not with deleteLater(): the plugin with the devices' code may be unloaded after
    // this.
    while (!m_devices.isEmpty()) {
        PDevice* const device = m_devices.takeLast();
        device->retire();
        delete device;
    }
}

void PDeviceRegister::registerInitialize() {
    updateDevices();
}

void PDeviceRegister::registerCleanup() {
    while (!m_devices.isEmpty())
        removeDevice(m_devices.last());
}

PDevice* PDeviceRegister::createDevice(const QByteArray& id) {
    if (findDevice(id) == nullptr)
        updateDevices();
    return findDevice(id);
}

void PDeviceRegister::destroyDevice(PDevice* device) {
    device->deleteLater();
}

QList<PDevice*> PDeviceRegister::aliveDevices() {
    return {};
}

PDevice* PDeviceRegister::findDevice(const QByteArray& id) const {
    const auto found = std::find_if(m_devices.begin(), m_devices.end(), [&](const PDevice* d) {
        return d->deviceId(false) == id || d->deviceId(true) == id;
    });
    return found == m_devices.end() ? nullptr : *found;
}

void PDeviceRegister::removeDevice(PDevice* device) {
    // Removed from the list before anything is emitted: a slot that looks for it, or removes it
    // again, must not find it.
    if (!m_devices.removeOne(device))
        return;
    const QPointer<PDevice> present(device);
    device->retire();
    if (present)
        emit deviceRemoved(device);
    if (present) // no listener has deleted it
        destroyDevice(device);
}

void PDeviceRegister::updateDevices() {
    if (m_updating) {
        m_updateAgain = true;
        return;
    }
    m_updating = true;
    const auto done = qScopeGuard([this] { m_updating = false; });
    try {
        do {
            m_updateAgain = false;
            mergeDevices(aliveDevices());
        } while (m_updateAgain);
    } catch (const std::exception& error) {
        // Called by a timer: an exception would unwind the event loop. The list is unchanged, and
        // the next rescan tries again.
        logFailure(error.what());
    } catch (...) {
        logFailure("unknown exception");
    }
}

void PDeviceRegister::mergeDevices(const QList<PDevice*>& alive) {
    const QList<PDevice*> known = m_devices;
    const QList<PDevice*> present = presentDevices(alive);
    for (PDevice* device : known) {
        if (!present.contains(device))
            removeDevice(device);
    }
    renewSilentDevices(known);
    for (PDevice* device : present) {
        if (!known.contains(device))
            addDevice(device);
    }
}

/// The devices that the plugin lists, one for each camera.
QList<PDevice*> PDeviceRegister::presentDevices(const QList<PDevice*>& alive) {
    const QList<PDevice*> named = eachOnce(alive);
    QList<PDevice*> present;
    for (PDevice* device : named) {
        PDevice* const first = firstOfSameCamera(device, named + present);
        present.append(first != nullptr ? first : device);
        if (first == nullptr)
            continue;
        device->setParent(this); // deleted with the register at the latest
        destroyDevice(device);
    }
    return present;
}

/// A plugin may open a camera a second time if it does not recognise the existing device. The
/// device that the host uses is kept; null if the plugin lists all devices of this camera.
PDevice* PDeviceRegister::firstOfSameCamera(const PDevice* device,
                                            const QList<PDevice*>& named) const {
    if (m_devices.contains(device))
        return nullptr;
    const auto found = std::find_if(m_devices.begin(), m_devices.end(), [&](PDevice* known) {
        return !named.contains(known) && known->isEqualSessionInfo(device) && known->isAnswering();
    });
    return found == m_devices.end() ? nullptr : *found;
}

/// An idle camera that was unplugged and plugged in again between two scans is listed as before,
/// but its device belongs to the session that the unplugging ended.
void PDeviceRegister::renewSilentDevices(const QList<PDevice*>& known) {
    for (PDevice* device : known) {
        // A streaming device reports on its own that its camera is gone.
        if (!m_devices.contains(device) || device->isStreaming() || device->isAnswering())
            continue;
        // Only then is the old session closed, and the plugin may open another. Queued, as the
        // signal comes from inside the device's destructor.
        connect(device, &QObject::destroyed, this, &PDeviceRegister::updateDevices,
                Qt::QueuedConnection);
        removeDevice(device);
    }
}

void PDeviceRegister::addDevice(PDevice* device) {
    // Owned, so that a device whose deletion is pending is deleted with the register at the latest.
    device->setParent(this);
    device->m_registerId = m_id;
    device->m_hadModes = !device->getSupportModes().isEmpty();
    m_devices.append(device);
    // Other code may delete the device: the list must not keep a dangling pointer. Only the address
    // is used, as the device no longer exists by then.
    connect(device, &QObject::destroyed, this, [this, device] { m_devices.removeOne(device); });
    emit deviceAdded(device);
}

#include "moc_PDeviceRegister.cpp"
