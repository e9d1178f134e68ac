// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfile.h>

#include <PCore/PExport.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

class PDevice;

/// The cached settings of a device as values: what a profile holds, without a file. Keeping them
/// costs only copies of shared values; nothing is encoded. A value type; any thread, unless a
/// function says otherwise.
class PCD_EXPORT PDeviceProfileValues {
public:
    /// The present mode and the value of every serialisable property. No property is read again.
    /// The device's thread.
    static PDeviceProfileValues ofDevice(PDevice& device);
    /// Takes the values of this device again, but not its mode, which is read from the camera. The
    /// device's thread.
    void renew(PDevice& device);

    /// True if there are none.
    bool isEmpty() const { return m_settings.isEmpty(); }
    /// The settings in the form in which profiles have them. Values without a form are left out.
    PDeviceProfile toProfile() const;

private:
    struct Setting {
        QByteArray id;
        QVariant value;
        QVariant range; ///< has the names of choices
    };

    QString m_model;
    QString m_serial;
    QString m_mode; ///< its id; empty if the device has no modes
    QList<Setting> m_settings;
};
