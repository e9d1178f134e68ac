// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfile.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QCoreApplication>

class PDevice;

/// The differences between a profile and the present settings of a device. The device's thread.
class PCD_EXPORT PDeviceProfileDiff {
    Q_DECLARE_TR_FUNCTIONS(PDeviceProfileDiff)

public:
    /// One setting that differs between file and camera.
    struct Difference {
        QByteArray id;    ///< of a property, or "mode"; "id.field" of one field of its value
        QString inFile;   ///< as text; null if the file has none
        QString onCamera; ///< as text; null if the camera has none, or none that profiles contain
    };

    /// Reads the device again and compares the mode, the file's settings in their order, then the
    /// settings that only the camera has. Fields of a composite value are compared one by one. The
    /// profile's values are not validated.
    static QList<Difference> between(const PDeviceProfile& profile, PDevice& device);
    /// The same, without what the device does not report (PReadWatch). Fails if there is such, with
    /// a sentence that names it.
    static PStatus find(const PDeviceProfile& profile, PDevice& device,
                        QList<Difference>& differences);
};
