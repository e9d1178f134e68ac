// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceRegister.h>

#include <toupcam/toupcam.h>

#include <QString>

class PTDevice;
class QTimer;

/// The root object of the plugin: knows the cameras that the SDK enumerates and follows them as
/// they come and go. Everything runs on the thread that owns it, unless noted otherwise.
class PTDeviceRegister : public PDeviceRegister {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "pellix.devices.ptregister")
    Q_INTERFACES(PDeviceRegister)

public:
    PTDeviceRegister();
    ~PTDeviceRegister() override;

    /// A device for every camera that is attached now, in the SDK's order: known ones again, new
    /// ones opened. A camera that cannot be opened is left out, and tried again the next time.
    QList<PDevice*> aliveDevices() override;

    /// The device of the camera with this SDK id, or null.
    PTDevice* findByCameraId(const QString& cameraId) const;

    /// What the SDK calls when a camera comes or goes; the context is the register. Any thread.
    static void hotPlugCallback(void* context);

    /// Searches for cameras again one second from now, counted from the last call.
    void scheduleRescan();

private:
    PDevice* findOrOpenDevice(const ToupcamDeviceV2& record);
    void removeDeviceWithId(const QByteArray& id);

    QTimer* rescanTimer = nullptr;
};
