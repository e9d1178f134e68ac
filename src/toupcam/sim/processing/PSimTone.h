// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimImageSettings.h>

#include <array>
#include <cstdint>

/// The new value for each value of a channel.
using PSimTone = std::array<std::uint8_t, 256>;

/// The tone part of image settings: gamma (255 x (v / 255) to the power of 100 / gamma),
/// contrast (distance from 127.5 times 2 to the power of contrast / 50), brightness (added),
/// negative (255 - v), in this order, each on values from 0 to 255. `gain` is applied first of all.
/// Callable from any thread.
PSimTone simTone(const PSimImageSettings& settings, double gain = 1.0);
