// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

#include <PCd/profile/PDeviceProfile.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

class PDevice;
class PDeviceProperty;

/// Saves profiles to files and reads them. Failures name the file, the line if there is one, and
/// what was wrong or expected.
class PCD_EXPORT PDeviceProfileFile {
    Q_DECLARE_TR_FUNCTIONS(PDeviceProfileFile)

public:
    /// The size limit: larger files are not profiles; all properties of a camera take a few
    /// kilobytes.
    static constexpr qint64 largestSize = qint64(1) << 20;

    /// The properties that profiles contain. The device's thread.
    static QList<PDeviceProperty*> savedProperties(PDevice& device);

    /// Reads the device's values again and saves model, serial, mode and every serialisable
    /// property. Fails if any of them cannot be read (PReadWatch), with a sentence that names it.
    /// The file is replaced in one step, or stays as it was. The device's thread.
    static PStatus save(PDevice& device, const QString& path);

    /// Reads a file. On failure the profile is unchanged. Any thread.
    static PStatus read(const QString& path, PDeviceProfile& profile);
};
