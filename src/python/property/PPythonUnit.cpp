// SPDX-License-Identifier: MIT
#include <python/property/PPythonUnit.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <cmath>

namespace {

/// The roles that a value as a whole can have, as attributes of a camera.
struct Name {
    PRole role;
    const char* name;
};

constexpr Name roleNames[] = {
    {PRole::ExposureTime, "exposure"},
    {PRole::Gain, "gain"},
    {PRole::AutoExposure, "auto_exposure"},
    {PRole::ExposureTarget, "exposure_target"},
    {PRole::Region, "region"},
    {PRole::Binning, "binning"},
    {PRole::Rotation, "rotation"},
    {PRole::FlipAcross, "flip_across"},
    {PRole::FlipDown, "flip_down"},
    {PRole::SensorTemperature, "sensor_temperature"},
    {PRole::CoolerOn, "cooler_on"},
    {PRole::CoolerTarget, "cooler_target"},
    {PRole::FanOn, "fan_on"},
    {PRole::FanLevel, "fan_level"},
    {PRole::WhiteBalanceTint, "white_balance_tint"},
    {PRole::WhiteBalanceTemperature, "white_balance_temperature"},
    {PRole::WhiteBalanceGain, "white_balance_gain"},
    {PRole::Contrast, "contrast"},
    {PRole::Hue, "hue"},
    {PRole::Saturation, "saturation"},
    {PRole::Brightness, "brightness"},
    {PRole::Gamma, "gamma"},
    {PRole::Monochrome, "monochrome"},
    {PRole::Negative, "negative"},
    {PRole::ColourMatrix, "colour_matrix"},
    {PRole::SpeedLevel, "speed"},
    {PRole::BacklightCompensation, "backlight_compensation"},
};

QString unitText(PRole role) {
    switch (role) {
    case PRole::ExposureTime:
        return u"ms"_qs;
    case PRole::SensorTemperature:
    case PRole::CoolerTarget:
        return u"°C"_qs;
    default:
        return {};
    }
}

} // namespace

PPythonUnit::PPythonUnit(const PDeviceProperty& property) {
    for (const PRoleBinding& binding : PPropertyRoles::of(property)) {
        if (binding.isPlain() && !roleName(binding.role).isEmpty())
            m_binding = binding;
    }
    if (m_binding)
        m_text = unitText(m_binding->role);
    else if (property.unit() == ValueUnits::Microsecond)
        m_text = u"µs"_qs;
}

QString PPythonUnit::roleName(PRole role) {
    for (const Name& one : roleNames) {
        if (one.role == role)
            return QString::fromLatin1(one.name);
    }
    return {};
}

bool PPythonUnit::isConverted() const {
    return m_binding && m_binding->unit != PRoleUnit::Own && m_binding->toRole(1) != 1;
}

double PPythonUnit::fromDevice(double number) const {
    return m_binding ? m_binding->toRole(number) : number;
}

double PPythonUnit::toDevice(double number) const {
    if (!isConverted())
        return number;
    if (m_binding->unit == PRoleUnit::Decibels)
        return 20 * std::log10(number);
    return number / m_binding->toRole(1);
}

double PPythonUnit::stepFromDevice(const PMinMaxRange<double>& range) const {
    if (m_binding && m_binding->unit == PRoleUnit::Decibels)
        return fromDevice(range.minimum + range.step) - fromDevice(range.minimum);
    return fromDevice(range.step); // exact: a difference would not be
}
