// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>

namespace PCD {

/// Kind of a property: which editor shows it and what its value is. The numbers are what plugins
/// pass and files hold; there are gaps on purpose.
enum class DevicePropertyType : int {
    Custom = 1,    ///< brings a panel of its own
    Integer = 5,   ///< whole number with a range
    Duration = 6,  ///< whole number with a range that is a time
    Switch = 9,    ///< on or off
    Choice = 10,   ///< one item of an enumeration
    Action = 11,   ///< one-shot command, no value
    ScanArea = 19, ///< region of the sensor
};

/// What a device can do beyond its virtual operations; bits.
enum class DeviceOption : int {
    HotPluggable = 0x40,      ///< it can vanish and come back while the host runs
    AsynchronousStill = 0x80, ///< a still picture arrives later, through processSnapshot()
};

} // namespace PCD

/// Unit of a numeric property as its value is exchanged.
enum class ValueUnits : int {
    None = 0,
    Microsecond = 8,
};

/// What a numeric property measures, so that an editor may offer other units of the same kind.
enum class ValueUnitType : int {
    None = 0,
    Time = 3,
};
