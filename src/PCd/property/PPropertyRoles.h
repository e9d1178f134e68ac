// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRoleValue.h>

#include <PCore/PExport.h>

class PDeviceProperty;

/// The roles of a property: a plugin declares them once, when it creates the property; the host
/// reads them. They are stored as a dynamic property of the object. A property without roles works
/// too, and nothing is guessed about it. The device's thread.
class PCD_EXPORT PPropertyRoles {
public:
    /// Sets the roles of a property, replacing earlier ones.
    static void declare(PDeviceProperty& property, const PRoleBindings& bindings);
    /// The property's roles; none if it declares none.
    static PRoleBindings of(const PDeviceProperty& property);
    /// The name of the method that has the role; empty if there is none.
    static QByteArray method(const PDeviceProperty& property, PRole role);
    /// The last known value with its roles; the device is not read.
    static PRoleValue value(const PDeviceProperty& property);
};
