// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class PDevice;

/// Identifies a camera, even after its device is gone. A value type.
struct PCameraIdentity {
    QString id;             ///< model and serial number, as `pcdctl list` prints them
    QString model;          ///< the model's name
    QString serial;         ///< empty if it is not known
    bool simulated = false; ///< true if it exists only in software

    /// The identity of a device; `simulatedSdk`: it uses a simulated SDK. The device's thread.
    static PCameraIdentity of(const PDevice* device, bool simulatedSdk);
};
