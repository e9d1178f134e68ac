// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <cstddef>
#include <vector>

/// Copies of 24-bit pixels with red and blue exchanged, as cameras send blue first and files store
/// red first. Any thread.
namespace PRedBlueSwap {

/// A way to copy this number of pixels; the memory does not overlap.
using Copy = void (*)(const uchar* from, uchar* to, std::size_t pixels);

/// All ways that this processor has, the fastest last. They do the same.
const std::vector<Copy>& allWays();
/// The fastest one.
Copy fastest();

} // namespace PRedBlueSwap
