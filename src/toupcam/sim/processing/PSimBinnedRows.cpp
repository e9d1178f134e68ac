// SPDX-License-Identifier: MIT
#include <toupcam/sim/processing/PSimBinnedRows.h>

#include <algorithm>

PSimBinnedRows::PSimBinnedRows(PSimRows& sensor, const PSimGeometry& geometry, unsigned channels)
    : m_sensor(sensor)
    , m_binning(geometry.binning)
    , m_divisor(geometry.average ? geometry.binning * geometry.binning : 1)
    , m_channels(channels)
    , m_width(geometry.binnedSize().width)
    , m_row(std::size_t{geometry.region.width} * channels)
    , m_sums(m_row.size()) {
}

void PSimBinnedRows::next(std::uint8_t* out) {
    std::fill(m_sums.begin(), m_sums.end(), std::uint16_t{0});
    for (unsigned i = 0; i < m_binning; ++i) {
        m_sensor.next(m_row.data());
        std::transform(m_sums.begin(), m_sums.end(), m_row.begin(), m_sums.begin(),
                       [](std::uint16_t sum, std::uint8_t value) {
                           return std::uint16_t(sum + value); // at most 4 x 255
                       });
    }
    const std::uint16_t* sums = m_sums.data();
    for (unsigned x = 0; x < m_width; ++x, sums += std::size_t{m_binning} * m_channels) {
        for (unsigned channel = 0; channel < m_channels; ++channel) {
            unsigned sum = m_divisor / 2;
            for (unsigned i = 0; i < m_binning; ++i)
                sum += sums[i * m_channels + channel];
            *out++ = std::uint8_t(std::min(sum / m_divisor, 255U));
        }
    }
}
