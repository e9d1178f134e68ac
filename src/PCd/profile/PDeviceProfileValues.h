// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfile.h>

#include <PCore/PExport.h>

#include <QByteArray>
#include <QList>
#include <QSet>
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
    /// Takes the values of this device again, but not its mode. A value that the device no longer
    /// reports stays as it was. The device's thread.
    void renew(PDevice& device);
    /// The same, except for the values of the held properties, which stay as they were.
    void renew(PDevice& device, const QSet<QByteArray>& held);
    /// Takes model, serial number and mode of this device, which is read for that. False if the
    /// device does not report its mode: then there is none. The device's thread.
    bool renewMode(PDevice& device);

    /// True if there are none.
    bool isEmpty() const { return m_settings.isEmpty(); }
    /// The properties whose values these are.
    QSet<QByteArray> ids() const;
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
