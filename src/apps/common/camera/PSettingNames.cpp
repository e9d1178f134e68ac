// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSettingNames.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

PSettingNames PSettingNames::of(PDevice* device) {
    PSettingNames names;
    for (const PDeviceProperty* property : device->supportProperties()) {
        const QVariant range = property->rangeInner();
        if (range.metaType() == QMetaType::fromType<PEnumeration>())
            names.m_choices[property->id()] = range.value<PEnumeration>();
    }
    return names;
}

PEnumerationItem PSettingNames::item(const QByteArray& setting, const QVariant& name) const {
    const auto choices = m_choices.find(setting);
    if (choices == m_choices.end() || name.typeId() != QMetaType::QString)
        return {};
    for (const PEnumerationItem& item : choices->second.items()) {
        if (item.name == name.toString())
            return item;
    }
    return {};
}
