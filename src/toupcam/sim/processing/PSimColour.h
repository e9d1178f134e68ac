// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimImageSettings.h>

#include <array>

/// The colour part of image settings as one matrix from red, green, blue to red, green, blue:
/// white-balance gains, then the sensor's crosstalk unless the colour matrix corrects it, then hue
/// and saturation. Callable from any thread.
using PSimColourMatrix = std::array<std::array<double, 3>, 3>;

/// The matrix of these settings; the identity if they change no colour.
PSimColourMatrix simColourMatrix(const PSimImageSettings& settings);
