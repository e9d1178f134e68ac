// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRole.h>

#include <QVariant>

#include <optional>

class PDevice;
class PDeviceProperty;
struct PDeviceProfile;

/// Whether a value that is about to be set changes the size of a camera's frames, which ends a
/// recording: all its frames have the same size. The device's thread.
class PFrameSizeChange {
public:
    /// The roles that byValue() can return.
    static QList<PRole> roles();
    /// The role by which this value of a property changes it: region, binning or rotation; nothing
    /// if it does not. Another binning counts even if it has the same factor.
    static std::optional<PRole> byValue(const PDeviceProperty& property, const QVariant& value);
    /// True if the profile has another mode that the device supports, or such a value.
    static bool byProfile(PDevice& device, const PDeviceProfile& profile);
};
