// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// The factors that turn light into counts, in fixed point: 16 units per count.
struct PSimRowFactors {
    std::uint16_t signal = 0;  ///< counts for one unit of light, in 1/4096
    std::uint16_t ceiling = 0; ///< most units the pixel can hold
    std::int16_t shot = 0;     ///< factor of root x noise, in 1/65536
    std::int16_t read = 0;     ///< factor of 256 x noise, in 1/65536
    std::int16_t offset = 0;   ///< units added at the end, rounding included
};

/// Exposes `count` pixels' channels: light, its roots and two rows of noise in, counts out, each of
/// that length. Callable from any thread.
void simExposeRow(const std::uint8_t* light, const std::uint8_t* roots, const std::int8_t* shot,
                  const std::int8_t* read, std::size_t count, const PSimRowFactors& factors,
                  std::uint8_t* out);
