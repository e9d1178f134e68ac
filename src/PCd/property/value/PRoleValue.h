// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRole.h>

#include <PCore/PExport.h>

#include <QVariant>

#include <optional>

/// The value of one property with its roles: read by role, it means the same for every device. A
/// choice is its item's name. A value type; any thread.
struct PCD_EXPORT PRoleValue {
    QByteArray id; ///< the property's
    QVariant value;
    PRoleBindings bindings;

    /// True if the value, or one of its fields, has the role. A method is not a value.
    bool has(PRole role) const;
    /// True if the value as a whole has the role.
    bool hasPlain(PRole role) const;
    /// The value or field with the role, in the device's unit; invalid if there is none.
    QVariant part(PRole role) const;
    /// A number in the unit of the role, the sum if several fields have it; nothing without the
    /// role, or if one of them is not a number.
    std::optional<double> number(PRole role) const;
    /// True if the value with the role is 1.
    bool isOn(PRole role) const { return number(role) == 1; }
};
