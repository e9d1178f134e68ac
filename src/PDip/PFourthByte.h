// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <cstddef>
#include <vector>

/// Sets the fourth byte of 32-bit pixels to 255, in place. Any thread.
class PCD_TEST_EXPORT PFourthByte {
public:
    /// A way to do it to pixels of this many bytes, a multiple of four.
    using Fill = void (*)(unsigned char* pixels, std::size_t size);

    /// All ways that this processor has, the fastest last. They do the same.
    static const std::vector<Fill>& allWays();
    /// The fastest one.
    static Fill fastest();
};
