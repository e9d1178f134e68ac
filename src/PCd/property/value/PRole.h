// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QByteArray>
#include <QList>

/// What a value means, whatever the device calls it. Readers get numbers in the unit given here;
/// "on" is the number 1.
enum class PRole {
    ExposureTime,      ///< of live frames, milliseconds
    Gain,              ///< a factor: 1 amplifies nothing
    AutoExposure,      ///< on while the camera chooses time and gain
    ExposureTarget,    ///< the brightness that automatic exposure aims at
    Triggered,         ///< on while frames come by triggers only
    TriggerTime,       ///< exposure time of a triggered frame, milliseconds: the sum of its fields
    TriggerCount,      ///< frames of a triggered sequence
    TriggerSource,     ///< 0 software, 1 a signal at the camera's input
    FireTrigger,       ///< a method, bool (int frames): begins a run, or ends it with 0
    Region,            ///< what the camera sends, a rectangle in pixels of the mode
    Binning,           ///< pixels along the side of a square that become one
    Rotation,          ///< degrees clockwise
    FlipAcross,        ///< on: left and right are exchanged
    FlipDown,          ///< on: top and bottom are exchanged
    SensorTemperature, ///< degrees Celsius; as a method, QVariant (), invalid if not known
    CoolerOn,
    CoolerTarget, ///< degrees Celsius
    FanOn,        ///< negative if not known
    FanLevel,
    WhiteBalanceTint,
    WhiteBalanceTemperature,
    WhiteBalanceGain,
    Contrast,
    Hue,
    Saturation,
    Brightness,
    Gamma,
    Monochrome,
    Negative,
    ColourMatrix,
    SpeedLevel,
    BacklightCompensation,
};

/// The unit of a device's number, if it is not that of the role.
enum class PRoleUnit {
    Own, ///< that of the role
    Microseconds,
    Milliseconds,
    Seconds,
    Minutes,
    Percent,
    Decibels, ///< of an amplitude: 20 dB are a factor of 10
    TenthsOfDegree,
};

/// One role that a property has: as a whole, with one field of its composite value, or with a
/// method of its own that can be invoked by name. A value type.
struct PCD_EXPORT PRoleBinding {
    PRole role = PRole::ExposureTime;
    PRoleUnit unit = PRoleUnit::Own;
    QByteArray field = {};  ///< of its composite value
    QByteArray method = {}; ///< the name without arguments

    /// True if the role is that of the whole value.
    bool isPlain() const { return field.isEmpty() && method.isEmpty(); }
    /// Converts a number of the device to the unit of the role. Any thread.
    double toRole(double number) const;
};

using PRoleBindings = QList<PRoleBinding>;
