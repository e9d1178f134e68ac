// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

/// Exchanges red and blue in 32-bit pixels, in place: what is left to do to a pulled frame. Any
/// thread.
namespace PTPixelSwap {

/// A way to exchange the first and the third byte of this number of pixels.
using Swap = void (*)(unsigned char* pixels, std::size_t count);

/// All ways that this processor has, the fastest last. They do the same.
const std::vector<Swap>& allWays();
/// The fastest one.
Swap fastest();

} // namespace PTPixelSwap
