// SPDX-License-Identifier: MIT
#include <toupcam/sim/processing/PSimToneStage.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr int scaleBits = 10;
constexpr unsigned block = 256; // pixels: the planes of a block stay in the nearest cache

bool isDiagonal(const PSimColourMatrix& matrix) {
    bool result = true;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            result = result && (row == column || matrix[row][column] == 0.0);
    }
    return result;
}

bool isIdentity(const PSimTone& tone) {
    bool result = true;
    for (std::size_t i = 0; i < tone.size(); ++i)
        result = result && tone[i] == i;
    return result;
}

using Row = std::array<int, 3>;
using Planes = std::int32_t[3][block];

// One channel of a block; plane by plane, so that the compiler can vectorise it.
void mix(const Planes& in, const Row& factors, std::int32_t* __restrict out) {
    const Row f = factors;
    for (unsigned i = 0; i < block; ++i) {
        const int sum = f[0] * in[0][i] + f[1] * in[1][i] + f[2] * in[2][i];
        out[i] = std::clamp((sum + (1 << (scaleBits - 1))) >> scaleBits, 0, 255);
    }
}

void split(const std::uint8_t* row, unsigned count, Planes& planes) {
    for (unsigned i = 0; i < count; ++i) {
        for (unsigned channel = 0; channel < 3; ++channel)
            planes[channel][i] = row[std::size_t{i} * 3 + channel];
    }
}

} // namespace

PSimToneStage::PSimToneStage(const PSimImageSettings& settings, unsigned channels, bool blueFirst)
    : m_kind(Kind::Grey) {
    if (channels == 1) {
        m_tones.fill(simTone(settings));
        m_kind = isIdentity(m_tones[0]) ? Kind::Nothing : Kind::Grey;
        return;
    }
    const PSimColourMatrix colour = simColourMatrix(settings);
    const bool diagonal = isDiagonal(colour);
    const auto place = [blueFirst](std::size_t channel) {
        return blueFirst ? 2 - channel : channel;
    };
    for (std::size_t row = 0; row < 3; ++row) {
        m_tones[place(row)] = simTone(settings, diagonal ? colour[row][row] : 1.0);
        for (std::size_t column = 0; column < 3; ++column)
            m_matrix[place(row)][place(column)] =
                int(std::lround(colour[row][column] * (1 << scaleBits)));
    }
    const bool same = std::all_of(m_tones.begin(), m_tones.end(), isIdentity);
    m_kind = !diagonal ? Kind::Matrix : same ? Kind::Nothing : Kind::Tables;
}

void PSimToneStage::apply(std::uint8_t* row, unsigned width) const {
    if (m_kind == Kind::Grey) {
        for (unsigned x = 0; x < width; ++x)
            row[x] = m_tones[0][row[x]];
    } else if (m_kind == Kind::Tables) {
        for (unsigned x = 0; x < width; ++x, row += 3) {
            for (std::size_t channel = 0; channel < 3; ++channel)
                row[channel] = m_tones[channel][row[channel]];
        }
    } else if (m_kind == Kind::Matrix) {
        applyMatrix(row, width);
    }
}

void PSimToneStage::applyMatrix(std::uint8_t* row, unsigned width) const {
    Planes in = {};
    Planes out;
    for (unsigned x = 0; x < width; x += block, row += std::size_t{block} * 3) {
        const unsigned count = std::min(block, width - x);
        split(row, count, in);
        for (std::size_t channel = 0; channel < 3; ++channel)
            mix(in, m_matrix[channel], out[channel]);
        for (unsigned i = 0; i < count; ++i) {
            for (std::size_t channel = 0; channel < 3; ++channel)
                row[std::size_t{i} * 3 + channel] = m_tones[channel][std::size_t(out[channel][i])];
        }
    }
}
