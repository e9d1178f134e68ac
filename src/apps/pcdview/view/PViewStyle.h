// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

/// What is done to the pixels of a picture on the screen, and nowhere else. A value type; any
/// thread.
struct PViewStyle {
    using Levels = std::array<std::uint8_t, 256>;

    /// The levels that are shown as black and white; those in between are spread evenly.
    int black = 0;
    int white = 255;
    bool markClipped = false; ///< paint pixels that are at an end of the range in marking colours

    /// The shown value for each sample value.
    Levels levels() const;

    friend bool operator==(const PViewStyle& a, const PViewStyle& b) {
        return a.black == b.black && a.white == b.white && a.markClipped == b.markClipped;
    }
    friend bool operator!=(const PViewStyle& a, const PViewStyle& b) { return !(a == b); }
};
