// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>

#include <QByteArray>
#include <QVariant>

#include <map>

class PDevice;

/// The choices of a device's settings, available even after the device is gone. A value type; any
/// thread may read it.
class PSettingNames {
public:
    PSettingNames() = default;
    /// Copies the choices of the device's settings. The device's thread.
    static PSettingNames of(PDevice* device);

    /// The item that a frame's settings refer to; an empty item if the value or setting is not a
    /// known choice.
    PEnumerationItem item(const QByteArray& setting, const QVariant& name) const;

private:
    std::map<QByteArray, PEnumeration> m_choices;
};
