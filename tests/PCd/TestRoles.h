// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <QHash>

/// The roles of the test cameras' properties and fields, by property id.
inline const QHash<QByteArray, PRoleBindings>& testRoles() {
    using U = PRoleUnit;
    static const QHash<QByteArray, PRoleBindings> roles{
        {"extexposure",
         {{PRole::ExposureTarget, U::Own, "target"},
          {PRole::Gain, U::Percent, "gain"},
          {PRole::ExposureTime, U::Milliseconds, "exp"},
          {PRole::AutoExposure, U::Own, "autoexpenabled"},
          {PRole::TriggerTime, U::Minutes, "minutes"},
          {PRole::TriggerTime, U::Seconds, "seconds"},
          {PRole::TriggerTime, U::Milliseconds, "milliseconds"},
          {PRole::TriggerTime, U::Microseconds, "microseconds"},
          {PRole::TriggerCount, U::Own, "spincount"},
          {PRole::TriggerSource, U::Own, "triggermode"},
          {PRole::Triggered, U::Own, "capturemode"}}},
        {"autoexponeable", {{PRole::AutoExposure}}},
        {"autoexpotarget", {{PRole::ExposureTarget}}},
        {"autoexpottime", {{PRole::ExposureTime, U::Microseconds}}},
        {"autoexpogain", {{PRole::Gain, U::Percent}}},
        {"tint", {{PRole::WhiteBalanceTint}}},
        {"contrast", {{PRole::Contrast}}},
        {"negative", {{PRole::Negative}}},
        {"binning", {{PRole::Binning}}},
        {"rotate", {{PRole::Rotation}}},
        {"roi", {{PRole::Region}}},
        {"teccontrol",
         {{PRole::CoolerOn, U::Own, "on"}, {PRole::CoolerTarget, U::TenthsOfDegree, "target"}}},
        {"fan", {{PRole::FanOn, U::Own, "enable"}, {PRole::FanLevel, U::Own, "target"}}}};
    return roles;
}

/// The property with the roles for its id declared.
template <typename Property>
Property* withTestRoles(Property* property) {
    PPropertyRoles::declare(*property, testRoles().value(property->id()));
    return property;
}
