// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRoleValue.h>

#include <PCore/PExport.h>

#include <QList>

class PDevice;
class PDeviceProperty;
struct PDeviceSettings;

/// The values of a device by role: exposure, gain, region and so on, as far as the device has them.
/// Where a plain property and a field of a composite one have the same role, the plain property is
/// used, as it is read from the device. A value type; any thread.
class PCD_EXPORT PDeviceRoles {
public:
    /// From the cached values of a device; the device is not read. The device's thread.
    static PDeviceRoles of(const PDevice& device);
    /// From the settings of a frame. Any thread, also when the device is gone.
    static PDeviceRoles of(const PDeviceSettings& settings);

    /// All values of a frame's settings in their order, also those without roles. Any thread.
    static QList<PRoleValue> toValues(const PDeviceSettings& settings);

    /// The property with the role, plain before composite; null if there is none, or if the
    /// device's list has not been built. The device's thread, as for the next three.
    static PDeviceProperty* property(const PDevice& device, PRole role);
    /// The property whose value as a whole has the role, or null.
    static PDeviceProperty* plainProperty(const PDevice& device, PRole role);
    /// The property that has the role in a field, or null.
    static PDeviceProperty* compositeProperty(const PDevice& device, PRole role);
    /// The property that has the role with a method, or null.
    static PDeviceProperty* methodProperty(const PDevice& device, PRole role);

    /// The value with the role, plain before composite; empty if there is none.
    PRoleValue find(PRole role) const;
    /// The composite value with the role in a field; empty if there is none.
    PRoleValue findComposite(PRole role) const;
    /// The functions of PRoleValue, for the value that find() returns.
    QVariant part(PRole role) const { return find(role).part(role); }
    std::optional<double> number(PRole role) const { return find(role).number(role); }
    bool isOn(PRole role) const { return find(role).isOn(role); }

private:
    QList<PRoleValue> m_values; ///< those with roles
};
