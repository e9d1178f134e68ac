// SPDX-License-Identifier: MIT
#include <toupcam/sim/processing/PSimTone.h>

#include <algorithm>
#include <cmath>

namespace {

double limited(double value) {
    return std::clamp(value, 0.0, 255.0);
}

double toned(double value, const PSimImageSettings& settings) {
    const double lit = 255.0 * std::pow(value / 255.0, 100.0 / settings.gamma);
    const double spread = limited(127.5 + (lit - 127.5) * std::exp2(settings.contrast / 50.0));
    const double shifted = limited(spread + settings.brightness);
    return settings.negative ? 255.0 - shifted : shifted;
}

} // namespace

PSimTone simTone(const PSimImageSettings& settings, double gain) {
    PSimTone tone{};
    for (std::size_t i = 0; i < tone.size(); ++i) {
        const double value = limited(gain * double(i));
        tone[i] = std::uint8_t(std::lround(toned(value, settings)));
    }
    return tone;
}
