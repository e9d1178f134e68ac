// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <cstddef>
#include <vector>

/// The gradient of a row of samples, computed with the Sobel operator. Any thread.
namespace PGradient {

/// Over the inner samples of rows: all but the first and the last.
struct Sums {
    quint64 squares = 0; ///< of the gradients
    quint64 samples = 0;
};

/// A way to add the sums of a row, which has this width and one above and below it.
using Add = void (*)(const unsigned char* above, const unsigned char* row,
                     const unsigned char* below, std::size_t width, Sums& sums);

/// All ways that this processor has, the fastest last. They do the same.
const std::vector<Add>& allWays();
/// The fastest one.
Add fastest();

} // namespace PGradient
