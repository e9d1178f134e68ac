// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>
#include <QList>
#include <QString>

class PDevice;
class PDeviceProperty;

/// Settings of a camera in one text: "ID=VALUE,ID.FIELD=VALUE,…", the values as `pcdctl set` takes
/// them. Values may contain commas.
class PGstSettings {
public:
    /// Reads the text; nothing is checked against a camera. Fails, naming the part that is no
    /// setting. Any thread.
    PStatus read(const QString& text);
    /// Appends the other settings, in place of the earlier ones of the same value or field: each is
    /// there once. Any thread.
    void add(const PGstSettings& other);

    /// Checks all of them, then sends them in their order and reads each back. Fails, with nothing
    /// sent, if the camera has no such setting, or it cannot have the value; else with those that
    /// the camera did not take. The device's thread.
    PStatus apply(PDevice& device) const;

    bool isEmpty() const { return m_settings.isEmpty(); }

private:
    struct Setting {
        QByteArray id;
        QString field; ///< of a composite value; empty: the whole value
        QString text;
    };

    static PStatus check(PDevice& device, const Setting& setting);
    static QString send(PDeviceProperty& property, const Setting& setting);

    QList<Setting> m_settings;
};
