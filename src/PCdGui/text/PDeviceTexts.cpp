// SPDX-License-Identifier: MIT
#include <PCdGui/text/PDeviceTexts.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>

namespace {

PEnumeration readChoices(PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Choice
               ? property.tryGetRange().value<PEnumeration>()
               : PEnumeration();
}

} // namespace

PDeviceTexts::PDeviceTexts(PDevice& device) {
    const QList<PDeviceProperty*> properties = device.getSupportProperties();
    for (PDeviceProperty* property : properties)
        m_properties.insert(property->id(),
                            {property->title(), property->description(), readChoices(*property)});
    qDeleteAll(properties);
    const QList<PDevicePropertyGroup*> groups = device.getSupportPropertyGroups();
    for (const PDevicePropertyGroup* group : groups)
        m_groups.insert(group->id(), group->title());
    qDeleteAll(groups);
}
