// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PFrameSizeChange.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfile.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <QRect>

#include <algorithm>
#include <cmath>

namespace {

PRoleValue withValue(const PDeviceProperty& property, const QVariant& value) {
    return {property.id(), PPropertyEncoding::named(value, property.rangeInner()),
            PPropertyRoles::of(property)};
}

/// True for a quarter turn and for three, which exchange width and height.
bool liesOnItsSide(const PRoleValue& rotation) {
    return std::lround(rotation.number(PRole::Rotation).value_or(0)) % 180 != 0;
}

bool isOtherMode(PDevice& device, const QString& id) {
    const QList<PDeviceMode> modes = device.getSupportModes();
    const bool isSupported = std::any_of(modes.begin(), modes.end(), [&](const PDeviceMode& mode) {
        return QString::fromLatin1(mode.id) == id;
    });
    return isSupported && QString::fromLatin1(device.reportedMode().id) != id;
}

} // namespace

QList<PRole> PFrameSizeChange::roles() {
    return {PRole::Region, PRole::Binning, PRole::Rotation};
}

std::optional<PRole> PFrameSizeChange::byValue(const PDeviceProperty& property,
                                               const QVariant& value) {
    const PRoleValue now = PPropertyRoles::value(property);
    const PRoleValue then = withValue(property, value);
    if (now.has(PRole::Region) &&
        now.part(PRole::Region).toRect().size() != then.part(PRole::Region).toRect().size())
        return PRole::Region;
    if (now.has(PRole::Binning) && now.part(PRole::Binning) != then.part(PRole::Binning))
        return PRole::Binning;
    if (now.has(PRole::Rotation) && liesOnItsSide(now) != liesOnItsSide(then))
        return PRole::Rotation;
    return std::nullopt;
}

bool PFrameSizeChange::byProfile(PDevice& device, const PDeviceProfile& profile) {
    if (isOtherMode(device, profile.mode.form.toString()))
        return true;
    return std::any_of(profile.settings.begin(), profile.settings.end(),
                       [&](const PDeviceProfile::Setting& setting) {
                           const PDeviceProperty* const property = device.getProperty(setting.id);
                           if (property == nullptr)
                               return false;
                           const QVariant value = PPropertyEncoding::fromForm(
                               setting.form, property->reportedValue(), property->rangeInner());
                           return value.isValid() && byValue(*property, value);
                       });
}
