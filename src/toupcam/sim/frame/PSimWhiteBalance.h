// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimMeter.h>

#include <array>

/// White balance: the light that is shown as white. Light of a colour temperature is that of a
/// black body by Planck's law, taken at the middle wavelength of each colour channel and compared
/// with light of 6503 K. All callable from any thread.
namespace PSimWhiteBalance {

constexpr int neutralTemperature = 6503; ///< kelvin
constexpr int neutralTint = 1000;

/// Red, green and blue.
using Channels = std::array<double, 3>;

/// A white-balance setting of the client.
struct Setting {
    int temperature = neutralTemperature; ///< kelvin, 2000 … 15000
    int tint = neutralTint;               ///< 200 … 2500
};

/// The strength of light of this temperature in each channel, relative to the strongest; neutral
/// light has 1 in all.
Channels lamp(double kelvin);

/// The factors that make light of the setting's temperature white, leaving green unchanged; then a
/// tint above 1000 makes green proportionally stronger, one below it weaker.
Channels gains(const Setting& setting);

/// The setting, within its ranges, that makes these means of an unbalanced picture grey.
Setting balancing(const PSimMeans& means);

} // namespace PSimWhiteBalance
