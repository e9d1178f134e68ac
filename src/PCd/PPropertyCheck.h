// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QVariant>

class PDeviceProperty;

/// Tells before a value is sent whether a property can take it, by the host's copy of its range and
/// value. The device's thread; the device is not asked.
class PPropertyCheck {
public:
    /// Fails with a sentence that names the property, the value and what was expected: a value of
    /// another type, outside the range or between its steps, a choice or region that does not
    /// exist, or any value for an action.
    static PStatus check(const PDeviceProperty& property, const QVariant& value);

    /// What the property expects, in words: "a whole number from -100 to 100".
    static QString expectation(const PDeviceProperty& property);
};
