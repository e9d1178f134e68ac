// SPDX-License-Identifier: MIT
#include <toupcam/sim/frame/PSimMeter.h>

#include <algorithm>

namespace {

constexpr unsigned sampleColumns = 96;
constexpr unsigned sampleRows = 64;

} // namespace

PSimMeter::PSimMeter(const PSimSize& size, unsigned channels)
    : m_width(size.width)
    , m_channels(channels)
    , m_across(std::max(1U, size.width / sampleColumns))
    , m_down(std::max(1U, size.height / sampleRows)) {
}

void PSimMeter::add(unsigned y, const std::uint8_t* row) {
    if (y % m_down != 0)
        return;
    for (unsigned x = 0; x < m_width; x += m_across, ++m_count) {
        for (unsigned channel = 0; channel < m_channels; ++channel)
            m_sums[channel] += row[std::size_t{x} * m_channels + channel];
    }
}

PSimMeans PSimMeter::means(bool blueFirst) const {
    const auto mean = [this](unsigned channel) {
        return double(m_sums[std::min(channel, m_channels - 1)]) / double(m_count);
    };
    return blueFirst ? PSimMeans{mean(2), mean(1), mean(0)} : PSimMeans{mean(0), mean(1), mean(2)};
}
