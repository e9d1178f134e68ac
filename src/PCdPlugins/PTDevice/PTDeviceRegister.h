// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceRegister.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

#include <QString>

class PTDevice;
class QTimer;

/// The root object of the plugin: keeps the list of cameras that the SDK enumerates up to date as
/// they come and go. Everything runs on the thread that owns it, unless noted otherwise.
class PCD_EXPORT PTDeviceRegister : public PDeviceRegister {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "pellix.devices.ptregister")
    Q_INTERFACES(PDeviceRegister)

public:
    PTDeviceRegister();
    ~PTDeviceRegister() override;

    /// A device for every camera attached now, in the SDK's order: the existing ones, and new ones,
    /// which are opened. A camera that cannot be opened is left out and tried again the next time.
    QList<PDevice*> aliveDevices() override;

    /// The device of the camera with this SDK id, or null.
    PTDevice* findByCameraId(const QString& cameraId) const;

    /// Called by the SDK when a camera comes or goes; the context is the register. Any thread.
    static void hotPlugCallback(void* context);

    /// Searches for cameras one second after the last call of this function.
    void scheduleRescan();

private:
    PDevice* findOrOpenDevice(const ToupcamDeviceV2& record);
    void removeDeviceWithId(const QByteArray& id);

    QTimer* rescanTimer = nullptr;
};
