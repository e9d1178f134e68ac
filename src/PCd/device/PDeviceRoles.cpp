// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceRoles.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PFrameStamp.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <algorithm>

namespace {

/// The properties in the order of the device's list, which this does not build.
QList<PDeviceProperty*> listProperties(const PDevice& device) {
    return device.findChildren<PDeviceProperty*>(QString(), Qt::FindDirectChildrenOnly);
}

template <typename Predicate>
PDeviceProperty* findFirst(const PDevice& device, const Predicate& isMatch) {
    const QList<PDeviceProperty*> properties = listProperties(device);
    const auto found =
        std::find_if(properties.begin(), properties.end(), [&](const PDeviceProperty* property) {
            return isMatch(PPropertyRoles::of(*property));
        });
    return found == properties.end() ? nullptr : *found;
}

template <typename Predicate>
PDeviceProperty* firstWith(const PDevice& device, PRole role, const Predicate& isMatch) {
    return findFirst(device, [&](const PRoleBindings& bindings) {
        return std::any_of(bindings.begin(), bindings.end(), [&](const PRoleBinding& binding) {
            return binding.role == role && isMatch(binding);
        });
    });
}

template <typename Predicate>
PRoleValue findFirst(const QList<PRoleValue>& values, const Predicate& isMatch) {
    const auto found = std::find_if(values.begin(), values.end(), isMatch);
    return found == values.end() ? PRoleValue() : *found;
}

} // namespace

PDeviceRoles PDeviceRoles::of(const PDevice& device) {
    PDeviceRoles roles;
    for (const PDeviceProperty* property : listProperties(device)) {
        const PRoleValue value = PPropertyRoles::value(*property);
        if (!value.bindings.isEmpty())
            roles.m_values.append(value);
    }
    return roles;
}

PDeviceRoles PDeviceRoles::of(const PDeviceSettings& settings) {
    PDeviceRoles roles;
    roles.m_values = toValues(settings);
    roles.m_values.removeIf([](const PRoleValue& value) { return value.bindings.isEmpty(); });
    return roles;
}

QList<PRoleValue> PDeviceRoles::toValues(const PDeviceSettings& settings) {
    QList<PRoleValue> values;
    for (const auto& [id, value] : settings.values)
        values.append({id, value, settings.roles.value(id).value<PRoleBindings>()});
    return values;
}

PDeviceProperty* PDeviceRoles::property(const PDevice& device, PRole role) {
    PDeviceProperty* const plain = plainProperty(device, role);
    return plain != nullptr ? plain : compositeProperty(device, role);
}

PDeviceProperty* PDeviceRoles::plainProperty(const PDevice& device, PRole role) {
    return firstWith(device, role, [](const PRoleBinding& binding) { return binding.isPlain(); });
}

PDeviceProperty* PDeviceRoles::compositeProperty(const PDevice& device, PRole role) {
    return firstWith(device, role,
                     [](const PRoleBinding& binding) { return !binding.field.isEmpty(); });
}

PDeviceProperty* PDeviceRoles::methodProperty(const PDevice& device, PRole role) {
    return firstWith(device, role,
                     [](const PRoleBinding& binding) { return !binding.method.isEmpty(); });
}

PRoleValue PDeviceRoles::find(PRole role) const {
    const PRoleValue plain =
        findFirst(m_values, [&](const PRoleValue& value) { return value.hasPlain(role); });
    return plain.bindings.isEmpty() ? findComposite(role) : plain;
}

PRoleValue PDeviceRoles::findComposite(PRole role) const {
    return findFirst(m_values, [&](const PRoleValue& value) {
        return value.has(role) && !value.hasPlain(role);
    });
}
