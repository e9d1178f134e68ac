// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceRegister.h>

/// Root object of a device plugin without devices.
class TestRegister : public PDeviceRegister {
    Q_OBJECT
    Q_INTERFACES(PDeviceRegister)
    Q_PLUGIN_METADATA(IID "pellix.devices.test")

public:
    TestRegister() { setId("testregister"); }
};
