// SPDX-License-Identifier: MIT
#include <PCdGui/text/PDeviceTexts.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <utility>

namespace {

PEnumeration readChoices(PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Choice
               ? property.tryGetRange().value<PEnumeration>()
               : PEnumeration();
}

} // namespace

PDeviceTexts::PDeviceTexts(PDevice& device) {
    QList<PDeviceProperty*> properties = device.getSupportProperties();
    properties.removeAll(nullptr); // the device leaves them out too
    for (PDeviceProperty* property : std::as_const(properties))
        m_properties.insert(property->id(),
                            {property->title(), property->description(), readChoices(*property)});
    qDeleteAll(properties);
    QList<PDevicePropertyGroup*> groups = device.getSupportPropertyGroups();
    groups.removeAll(nullptr);
    for (const PDevicePropertyGroup* group : std::as_const(groups))
        m_groups.insert(group->id(), group->title());
    qDeleteAll(groups);
}
