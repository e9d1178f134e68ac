// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimExposeRow.h>

#include <algorithm>

namespace {

// The upper half of a 16 x 16 bit product: one instruction on a vector of eight.
inline std::int16_t highProduct(std::int16_t a, std::int16_t b) {
    return std::int16_t((a * b) >> 16);
}

inline std::uint16_t highProduct(std::uint16_t a, std::uint16_t b) {
    return std::uint16_t((unsigned(a) * b) >> 16);
}

} // namespace

void simExposeRow(const std::uint8_t* __restrict light, const std::uint8_t* __restrict roots,
                  const std::int8_t* __restrict shot, const std::int8_t* __restrict read,
                  std::size_t count, const PSimRowFactors& factors, std::uint8_t* __restrict out) {
    const PSimRowFactors f = factors; // a copy: nothing written below can change it
    for (std::size_t i = 0; i < count; ++i) {
        const auto wide = std::uint16_t(light[i] << 8);
        const auto signal = std::int16_t(std::min(highProduct(wide, f.signal), f.ceiling));
        const auto spread = std::int16_t(roots[i] * shot[i]);
        const auto lifted = std::int16_t(read[i] * 256);
        const auto units = std::int16_t(signal + highProduct(spread, f.shot) +
                                        highProduct(lifted, f.read) + f.offset);
        const auto counts = std::int16_t(units >> 4);
        out[i] = std::uint8_t(std::min<std::int16_t>(std::max<std::int16_t>(counts, 0), 255));
    }
}
