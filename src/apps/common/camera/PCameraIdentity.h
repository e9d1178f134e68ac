// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class PDevice;

/// Which camera something came from, also when the device is gone. A value.
struct PCameraIdentity {
    QString id;
    QString model;
    QString serial;
    bool simulated = false;

    /// Of a device that came through an SDK that is simulated or not. The device's thread.
    static PCameraIdentity of(const PDevice* device, bool simulatedSdk);
};
