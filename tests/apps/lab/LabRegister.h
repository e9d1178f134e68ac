// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceRegister.h>

/// Root object of a plugin with one camera, a LabDevice, which a test can unplug.
class LabRegister : public PDeviceRegister {
    Q_OBJECT
    Q_INTERFACES(PDeviceRegister)
    Q_PLUGIN_METADATA(IID "pellix.devices.lab")

public:
    LabRegister() { setId("lab"); }

    QList<PDevice*> aliveDevices() override;
    /// Pulls or plugs the cable, and updates the devices. For tests, which call it by name.
    Q_INVOKABLE void setPlugged(bool plugged);

private:
    bool m_isPlugged = true;
};
