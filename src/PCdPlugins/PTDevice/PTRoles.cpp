// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTRoles.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <QHash>

namespace {

/// In video and in triggered capture; the plain properties have the camera's own settings.
PRoleBindings exposureRoles() {
    return {{PRole::ExposureTarget, PRoleUnit::Own, "target"},
            {PRole::Gain, PRoleUnit::Percent, "gain"},
            {PRole::ExposureTime, PRoleUnit::Milliseconds, "exp"},
            {PRole::AutoExposure, PRoleUnit::Own, "autoexpenabled"},
            {PRole::TriggerTime, PRoleUnit::Minutes, "minutes"},
            {PRole::TriggerTime, PRoleUnit::Seconds, "seconds"},
            {PRole::TriggerTime, PRoleUnit::Milliseconds, "milliseconds"},
            {PRole::TriggerTime, PRoleUnit::Microseconds, "microseconds"},
            {PRole::TriggerCount, PRoleUnit::Own, "spincount"},
            {PRole::TriggerSource, PRoleUnit::Own, "triggermode"},
            {PRole::Triggered, PRoleUnit::Own, "capturemode"},
            {PRole::FireTrigger, PRoleUnit::Own, {}, "fireTrigger"}};
}

PRoleBindings coolerRoles() {
    return {{PRole::CoolerOn, PRoleUnit::Own, "on"},
            {PRole::CoolerTarget, PRoleUnit::TenthsOfDegree, "target"},
            {PRole::SensorTemperature, PRoleUnit::Own, {}, "sensorTemperature"}};
}

PRoleBindings fanRoles() {
    return {{PRole::FanOn, PRoleUnit::Own, "enable"}, {PRole::FanLevel, PRoleUnit::Own, "target"}};
}

QHash<QByteArray, PRoleBindings> rolesById() {
    return {{"extexposure", exposureRoles()},
            {"autoexponeable", {{PRole::AutoExposure}}},
            {"autoexpotarget", {{PRole::ExposureTarget}}},
            {"autoexpottime", {{PRole::ExposureTime, PRoleUnit::Microseconds}}},
            {"autoexpogain", {{PRole::Gain, PRoleUnit::Percent}}},
            {"tint", {{PRole::WhiteBalanceTint}}},
            {"temp", {{PRole::WhiteBalanceTemperature}}},
            {"wbgain", {{PRole::WhiteBalanceGain}}},
            {"contrast", {{PRole::Contrast}}},
            {"hue", {{PRole::Hue}}},
            {"saturation", {{PRole::Saturation}}},
            {"brightness", {{PRole::Brightness}}},
            {"gamma", {{PRole::Gamma}}},
            {"chrome", {{PRole::Monochrome}}},
            {"negative", {{PRole::Negative}}},
            {"colormatrix", {{PRole::ColourMatrix}}},
            {"binning", {{PRole::Binning}}},
            {"rotate", {{PRole::Rotation}}},
            {"vflip", {{PRole::FlipDown}}},
            {"hflip", {{PRole::FlipAcross}}},
            {"roi", {{PRole::Region}}},
            {"speed", {{PRole::SpeedLevel}}},
            {"backlight", {{PRole::BacklightCompensation}}},
            {"teccontrol", coolerRoles()},
            {"fan", fanRoles()}};
}

} // namespace

void PTRoles::declare(const QList<PDeviceProperty*>& properties) {
    static const QHash<QByteArray, PRoleBindings> roles = rolesById();
    for (PDeviceProperty* const property : properties) {
        const auto found = roles.find(property->id());
        if (found != roles.end())
            PPropertyRoles::declare(*property, *found);
    }
}
