// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfile.h>

class PDevice;

/// How a profile differs from a device as it is. The device's thread.
class PDeviceProfileDiff {
public:
    /// One setting that file and camera have differently.
    struct Difference {
        QByteArray id;    ///< of a property, or "mode"; "id.field" of one field of its value
        QString inFile;   ///< as text; null: the file has none
        QString onCamera; ///< likewise: the camera has none, or none that profiles hold
    };

    /// Reads the device again and compares: the mode, the file's settings in their order, then what
    /// only the camera has. Each field of a composite value is compared by itself. What a profile's
    /// values are worth is not looked at.
    static QList<Difference> between(const PDeviceProfile& profile, PDevice& device);
};
