// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRoleValue.h>

class PDeviceProperty;

/// The roles of a property: a plugin declares them, once, when it makes the property; the host
/// reads them. They are a dynamic property of the object, so a property without roles is complete
/// too, and nothing is guessed of it. The device's thread.
class PPropertyRoles {
public:
    /// Gives a property its roles, in place of those it had.
    static void declare(PDeviceProperty& property, const PRoleBindings& bindings);
    /// Its roles; none if it declares none.
    static PRoleBindings of(const PDeviceProperty& property);
    /// The name of the method that has the role; empty if there is none.
    static QByteArray method(const PDeviceProperty& property, PRole role);
    /// The host's copy of its value, and its roles; the device is not read.
    static PRoleValue value(const PDeviceProperty& property);
};
