// SPDX-License-Identifier: MIT
#include <PCd/property/PPropertyRoles.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyEncoding.h>

namespace {

constexpr const char* dynamicName = "pcd.roles";

} // namespace

void PPropertyRoles::declare(PDeviceProperty& property, const PRoleBindings& bindings) {
    property.setProperty(dynamicName, QVariant::fromValue(bindings));
}

PRoleBindings PPropertyRoles::of(const PDeviceProperty& property) {
    return property.property(dynamicName).value<PRoleBindings>();
}

QByteArray PPropertyRoles::method(const PDeviceProperty& property, PRole role) {
    for (const PRoleBinding& binding : of(property)) {
        if (binding.role == role && !binding.method.isEmpty())
            return binding.method;
    }
    return {};
}

PRoleValue PPropertyRoles::value(const PDeviceProperty& property) {
    return {property.id(),
            PPropertyEncoding::named(property.reportedValue(), property.rangeInner()),
            of(property)};
}
