// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QByteArray>
#include <QList>
#include <QObject>

class PDevice;

/// The root object of a device plugin: it keeps the list of the plugin's devices that are present.
/// Everything runs on the thread that owns it.
class PCD_EXPORT PDeviceRegister : public QObject {
    Q_OBJECT

public:
    PDeviceRegister();
    /// Deletes the remaining devices.
    ~PDeviceRegister() override;

    // The order of the virtual functions is part of the binary interface: add at the end only.

    /// Called by the host when it begins to use the register: finds the devices present.
    virtual void registerInitialize();
    /// Called by the host before it deletes the register: removes all devices.
    virtual void registerCleanup();
    /// The device with this id (with or without the register's), after another search if it is not
    /// in the list; null if there is none.
    virtual PDevice* createDevice(const QByteArray& id);
    /// Disposes of a device that has been removed. Deletes it later, never at once: the call may
    /// come from one of its own signals.
    virtual void destroyDevice(PDevice* device);
    /// The devices present now: the existing objects, and new ones for new devices. The base class
    /// returns none.
    virtual QList<PDevice*> aliveDevices();

    const QByteArray& id() const { return m_id; }
    void setId(const QByteArray& id) { m_id = id; }

    const QList<PDevice*>& devices() const { return m_devices; }
    /// The device with this id (with or without the register's), or null.
    PDevice* findDevice(const QByteArray& id) const;
    /// Stops and unlinks the device, removes it from the list, emits deviceRemoved(), and disposes
    /// of it. Ignores a device that is not in the list.
    void removeDevice(PDevice* device);

public slots:
    /// Compares the list with aliveDevices(), adds new devices, removes missing ones, and emits a
    /// signal for each. A nested call is deferred until the outer one has ended.
    ///
    /// An idle device that is listed but no longer answers is removed; once it is deleted, another
    /// update lets the plugin create it again. A second device of a camera whose first one still
    /// answers is disposed of.
    void updateDevices();

signals:
    /// The device is in the list and not yet linked.
    void deviceAdded(PDevice* device);
    /// The device is stopped and unlinked, out of the list, and about to be deleted.
    void deviceRemoved(PDevice* device);

private:
    void addDevice(PDevice* device);
    void mergeDevices(const QList<PDevice*>& alive);
    QList<PDevice*> presentDevices(const QList<PDevice*>& alive);
    PDevice* firstOfSameCamera(const PDevice* device, const QList<PDevice*>& named) const;
    void renewSilentDevices(const QList<PDevice*>& known);

    QByteArray m_id;
    QList<PDevice*> m_devices;
    bool m_updating = false;
    bool m_updateAgain = false;
};

#define PDeviceRegister_iid "org.pellix.pcd.device_register/1.0"
Q_DECLARE_INTERFACE(PDeviceRegister, PDeviceRegister_iid)
