// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class PDevice;
class PDeviceRegister;

/// All devices of a program, from all its registers. The thread of the registers.
class PCD_EXPORT PDeviceManager : public QObject {
    Q_OBJECT

public:
    explicit PDeviceManager(QObject* parent = nullptr);
    /// Removes all devices, then deletes the registers.
    ~PDeviceManager() override;

    /// Takes ownership of a register, finds its devices, and emits deviceAdded() for each.
    void addRegister(PDeviceRegister* deviceRegister);

    /// The devices of all registers, in the order of the registers.
    QList<PDevice*> devices() const;

    /// The device that the user named, or the reason why there is none.
    struct Selection {
        PDevice* device = nullptr;
        QString problem;
    };
    /// Finds a device by its index in devices() (from 0), its id, or a unique prefix of its id. An
    /// empty text selects the first device.
    Selection select(const QString& text) const;

public slots:
    /// Makes every register search for its devices.
    void updateDevices();

signals:
    /// See PDeviceRegister::deviceAdded().
    void deviceAdded(PDevice* device);
    /// See PDeviceRegister::deviceRemoved().
    void deviceRemoved(PDevice* device);

private:
    std::vector<std::unique_ptr<PDeviceRegister>> m_registers;
};
