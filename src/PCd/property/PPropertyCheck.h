// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QVariant>

class PDeviceProperty;

/// Tells before a value is sent whether a property can take it, by the host's copy of its range and
/// value, and after it was sent whether it did. The device's thread.
class PPropertyCheck {
    Q_DECLARE_TR_FUNCTIONS(PPropertyCheck)

public:
    /// Fails with a sentence that names the property, the value and what was expected: a value of
    /// another type, outside the range or between its steps, a choice or region that does not
    /// exist, or any value for an action.
    static PStatus check(const PDeviceProperty& property, const QVariant& value);
    /// Likewise, by a range that is not applied yet.
    static PStatus check(const PDeviceProperty& property, const QVariant& value,
                         const QVariant& range);

    /// What the property expects, in words: "a whole number from -100 to 100".
    static QString expectation(const PDeviceProperty& property);
    static QString expectation(const PDeviceProperty& property, const QVariant& range);

    /// Sends a value, whatever it is, and reads back what the device has then: true if it is that
    /// value. Only this is certain, as devices differ in the sense of what they return.
    static bool setAndVerify(PDeviceProperty& property, const QVariant& value);
};
