// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QVariant>

class PDeviceProperty;

/// Checks whether a property can take a value, by its cached range and value, and whether it has
/// taken one that was sent. The device's thread.
class PCD_EXPORT PPropertyCheck {
    Q_DECLARE_TR_FUNCTIONS(PPropertyCheck)

public:
    /// Fails with a sentence that names the property, the value and what was expected: a value of
    /// another type, outside the range or between its steps, a choice or region that does not
    /// exist, or any value for an action.
    static PStatus check(const PDeviceProperty& property, const QVariant& value);
    /// The same for a range that does not apply yet.
    static PStatus check(const PDeviceProperty& property, const QVariant& value,
                         const QVariant& range);

    /// What the property expects, in words: "a whole number from -100 to 100".
    static QString expectation(const PDeviceProperty& property);
    static QString expectation(const PDeviceProperty& property, const QVariant& range);

    /// What a device has after a value was sent to it.
    enum class Outcome {
        Taken,   ///< the value
        Refused, ///< another one
        Unread,  ///< not known: it could not be read back
    };
    /// Sends any value and reads the device's value back, which is the only reliable test, as
    /// devices differ in what their results mean.
    static Outcome send(PDeviceProperty& property, const QVariant& value);
    /// The same: true if the device has the value.
    static bool setAndVerify(PDeviceProperty& property, const QVariant& value);
};
