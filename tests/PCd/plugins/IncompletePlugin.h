// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceRegister.h>

/// Root object of a device plugin whose library needs a symbol that no library has.
class IncompletePlugin : public PDeviceRegister {
    Q_OBJECT
    Q_INTERFACES(PDeviceRegister)
    Q_PLUGIN_METADATA(IID "pellix.devices.incomplete")

public:
    IncompletePlugin();
};
