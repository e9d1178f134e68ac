// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Kinds and options that hosts, plugins and files have in common, as fixed numbers.

#include <QMetaType>

/// The numbers in the contract between hosts and plugins.
namespace PCD {

/// Kind of a property: which editor shows it and what its value is. Plugins pass these numbers and
/// files contain them; the gaps are deliberate.
enum class DevicePropertyType : int {
    Custom = 1,    ///< has its own panel
    Integer = 5,   ///< whole number with a range
    Duration = 6,  ///< time as a whole number, with a range
    Switch = 9,    ///< on or off
    Choice = 10,   ///< one item of an enumeration
    Action = 11,   ///< one-shot command, no value
    ScanArea = 19, ///< region of the sensor
};

/// Capabilities of a device beyond its virtual functions, as flag bits.
enum class DeviceOption : int {
    HotPluggable = 0x40,      ///< can be unplugged and plugged in again while the host runs
    AsynchronousStill = 0x80, ///< a still arrives later, through processSnapshot()
};

} // namespace PCD

/// The unit in which the value of a numeric property is exchanged.
enum class ValueUnits : int {
    None = 0,
    Microsecond = 8,
};

/// What a numeric property measures, so that an editor may offer other units of the same kind.
enum class ValueUnitType : int {
    None = 0,
    Time = 3,
};
