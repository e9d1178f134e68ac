// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>

#include <QByteArray>
#include <QVariant>

#include <map>

class PDevice;

/// The choices that a device's settings have, also when the device is gone. A value; any thread may
/// read it.
class PSettingNames {
public:
    PSettingNames() = default;
    /// Takes the choices of the device's settings. The device's thread.
    static PSettingNames of(PDevice* device);

    /// The item that a frame's settings name; an empty one for a value or setting that is no known
    /// choice.
    PEnumerationItem item(const QByteArray& setting, const QVariant& name) const;

private:
    std::map<QByteArray, PEnumeration> m_choices;
};
