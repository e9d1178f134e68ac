// SPDX-License-Identifier: MIT
#include <toupcam/sim/frame/PSimWhiteBalance.h>

#include <algorithm>
#include <cmath>

namespace PSimWhiteBalance {

namespace {

constexpr int coldest = 15000;
constexpr int warmest = 2000;
constexpr double leastTint = 200.0;
constexpr double mostTint = 2500.0;

// Middle wavelengths of a colour sensor's filters, micrometres.
constexpr Channels wavelengths = {0.60, 0.54, 0.46};

// Planck's law at one wavelength, without the factors that do not depend on the temperature. The
// second radiation constant is hc/k = 14387.77 micrometres x kelvin (CODATA 2018).
double planck(double micrometres, double kelvin) {
    return 1.0 / std::expm1(14387.77 / (micrometres * kelvin));
}

// Each channel of a black body's light, relative to neutral light.
Channels blackBody(double kelvin) {
    Channels result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = planck(wavelengths[i], kelvin) / planck(wavelengths[i], neutralTemperature);
    return result;
}

double blueOverRed(int kelvin) {
    const Channels colour = blackBody(kelvin);
    return colour[2] / colour[0];
}

// The hotter, the bluer: bisection finds the temperature with this share of blue.
int findTemperature(double ratio) {
    int low = warmest;
    int high = coldest;
    while (low < high) {
        const int middle = (low + high) / 2;
        if (blueOverRed(middle) < ratio)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

} // namespace

Channels lamp(double kelvin) {
    Channels colour = blackBody(kelvin);
    const double strongest = *std::max_element(colour.begin(), colour.end());
    for (double& channel : colour)
        channel /= strongest;
    return colour;
}

Channels gains(const Setting& setting) {
    const Channels colour = blackBody(setting.temperature);
    const double green = double(setting.tint) / neutralTint;
    return {colour[1] / colour[0], green, colour[1] / colour[2]};
}

Setting balancing(const PSimMeans& means) {
    // A black channel says nothing about the light; one count keeps the ratios finite.
    const double red = std::max(means.red, 1.0);
    const double green = std::max(means.green, 1.0);
    const double blue = std::max(means.blue, 1.0);
    Setting setting;
    setting.temperature = findTemperature(blue / red);
    const Channels balanced = gains(setting);
    const double even = std::sqrt(red * balanced[0] * blue * balanced[2]);
    setting.tint = int(std::lround(std::clamp(neutralTint * even / green, leastTint, mostTint)));
    return setting;
}

} // namespace PSimWhiteBalance
