// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// No image, and no buffer for one, has as many bytes: sums and roundings of sizes below it never
/// wrap around.
inline constexpr std::size_t PImageSizeLimit = std::size_t(1) << 62;
