// SPDX-License-Identifier: MIT
#include <PCd/property/PDevicePropertyGroup.h>

#include <PCd/property/PDeviceProperty.h>

PDevicePropertyGroup::PDevicePropertyGroup(const QString& id, const QString& title)
    : m_id(id)
    , m_title(title) {
}

PDevicePropertyGroup::~PDevicePropertyGroup() = default;

void PDevicePropertyGroup::addProperty(PDeviceProperty* property) {
    if (property != nullptr)
        m_properties.append(property);
}

QList<PDeviceProperty*> PDevicePropertyGroup::properties() const {
    QList<PDeviceProperty*> present;
    for (const QPointer<PDeviceProperty>& property : m_properties) {
        if (property)
            present.append(property);
    }
    return present;
}

#include "moc_PDevicePropertyGroup.cpp"
