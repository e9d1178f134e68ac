// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class PDevice;
class PDeviceRegister;

/// All devices of a program: those of every register it has. The thread of the registers.
class PDeviceManager : public QObject {
    Q_OBJECT

public:
    explicit PDeviceManager(QObject* parent = nullptr);
    /// Removes all devices, then deletes the registers.
    ~PDeviceManager() override;

    /// Takes a register over and finds its devices, and emits deviceAdded() for each.
    void addRegister(PDeviceRegister* deviceRegister);

    /// The devices of all registers, in the order of the registers.
    QList<PDevice*> devices() const;

    /// The device that the user has named, or why there is none.
    struct Selection {
        PDevice* device = nullptr;
        QString problem;
    };
    /// Finds a device by its number in devices() (from 0), its id, or a beginning of its id that no
    /// other has. An empty text means the only or first device.
    Selection select(const QString& text) const;

public slots:
    /// Has every register look for its devices.
    void updateDevices();

signals:
    /// See PDeviceRegister::deviceAdded().
    void deviceAdded(PDevice* device);
    /// See PDeviceRegister::deviceRemoved().
    void deviceRemoved(PDevice* device);

private:
    std::vector<std::unique_ptr<PDeviceRegister>> m_registers;
};
