// SPDX-License-Identifier: MIT
#include <toupcam/sim/processing/PSimColour.h>

#include <toupcam/sim/frame/PSimWhiteBalance.h>

#include <cmath>

namespace {

using Matrix = PSimColourMatrix;

constexpr Matrix identity = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

// The light that the colour filters let through from neighbouring channels: each row adds up to 1,
// so grey stays grey and colours are paler.
constexpr Matrix crosstalk = {{{0.64, 0.28, 0.08}, {0.17, 0.66, 0.17}, {0.06, 0.31, 0.63}}};

// Brightness and two colour differences of ITU-R BT.601, and back.
constexpr Matrix toLuma = {
    {{0.299, 0.587, 0.114}, {-0.168736, -0.331264, 0.5}, {0.5, -0.418688, -0.081312}}};
constexpr Matrix fromLuma = {{{1, 0, 1.402}, {1, -0.344136, -0.714136}, {1, 1.772, 0}}};

Matrix product(const Matrix& a, const Matrix& b) {
    Matrix result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t i = 0; i < 3; ++i)
                result[row][column] += a[row][i] * b[i][column];
        }
    }
    return result;
}

Matrix balance(const PSimImageSettings& settings) {
    if (!settings.whiteBalanceGains)
        return identity;
    const auto gains = PSimWhiteBalance::gains({settings.temperature, settings.tint});
    return {{{gains[0], 0, 0}, {0, gains[1], 0}, {0, 0, gains[2]}}};
}

// Hue rotates the plane of the two colour differences, so that red goes towards yellow and green;
// saturation scales it.
Matrix hueAndSaturation(const PSimImageSettings& settings) {
    if (settings.hue == 0 && settings.saturation == 128 && !settings.chrome)
        return identity; // exactly: the constants above are rounded
    const double angle = settings.hue * 3.14159265358979323846 / 180.0;
    const double strength = settings.chrome ? 0.0 : settings.saturation / 128.0;
    const double c = strength * std::cos(angle);
    const double s = strength * std::sin(angle);
    const Matrix turned = {{{1, 0, 0}, {0, c, -s}, {0, s, c}}};
    return product(fromLuma, product(turned, toLuma));
}

} // namespace

PSimColourMatrix simColourMatrix(const PSimImageSettings& settings) {
    const Matrix sensor = product(settings.colourMatrix ? identity : crosstalk, balance(settings));
    return product(hueAndSaturation(settings), sensor);
}
