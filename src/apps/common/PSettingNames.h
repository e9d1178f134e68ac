// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>

#include <QByteArray>
#include <QVariant>

#include <map>

class PDevice;

/// The texts of a device's setting values, also when the device is gone. A value; any thread may
/// read it.
class PSettingNames {
public:
    PSettingNames() = default;
    /// Takes the choices of the device's settings. The device's thread.
    static PSettingNames of(PDevice* device);

    /// The item of a choice's value; an empty one for a value or setting that is no known choice.
    PEnumerationItem item(const QByteArray& setting, const QVariant& value) const;
    /// "12", "Add 2x2", "0,0,640,480"; a record of several values as "target 100, gain 120".
    QString text(const QByteArray& setting, const QVariant& value) const;

private:
    std::map<QByteArray, PEnumeration> m_choices;
};
