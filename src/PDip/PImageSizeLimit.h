// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Every image, and every buffer for one, is smaller than this, so that adding and rounding sizes
/// never overflows.
inline constexpr std::size_t PImageSizeLimit = std::size_t(1) << 62;
