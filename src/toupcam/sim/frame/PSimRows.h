// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The rows of one picture, from the top, before processing. Used on one thread.
class PSimRows {
public:
    virtual ~PSimRows() = default;
    /// Writes the next row, without padding.
    virtual void next(std::uint8_t* out) = 0;
};
