// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class PDevice;

/// Identifies a camera, even after its device is gone. A value type.
struct PCameraIdentity {
    QString id;
    QString model;
    QString serial;
    bool simulated = false;

    /// The identity of a device; `simulatedSdk`: it uses a simulated SDK. The device's thread.
    static PCameraIdentity of(const PDevice* device, bool simulatedSdk);
};
