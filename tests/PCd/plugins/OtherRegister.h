// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceRegister.h>

/// Root object of another device plugin without devices.
class OtherRegister : public PDeviceRegister {
    Q_OBJECT
    Q_INTERFACES(PDeviceRegister)
    Q_PLUGIN_METADATA(IID "pellix.devices.other")

public:
    OtherRegister() { setId("otherregister"); }
};
