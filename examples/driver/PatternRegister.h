// SPDX-License-Identifier: MIT
#pragma once

#include "PatternDevice.h"

#include <PCd/device/PDeviceRegister.h>

/// The root object of the plugin: the list of the cameras present, here one or none.
class PatternRegister : public PDeviceRegister {
    Q_OBJECT
    Q_INTERFACES(PDeviceRegister)
    Q_PLUGIN_METADATA(IID "pellix.devices.pattern")

public:
    PatternRegister() { setId("pattern"); }

    QList<PDevice*> aliveDevices() override {
        if (!m_isPlugged)
            return {};
        return devices().isEmpty() ? QList<PDevice*>{new PatternDevice(this)} : devices();
    }

    /// Plugs the made-up cable in or out, as an SDK would report it. Can be called by name.
    Q_INVOKABLE void setPlugged(bool plugged) {
        m_isPlugged = plugged;
        updateDevices();
    }

private:
    bool m_isPlugged = true;
};
