// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalysis.h>
#include <apps/pcdview/analysis/PGradient.h>
#include <apps/pcdview/analysis/PPairCounts.h>
#include <apps/pcdview/analysis/PRowSplit.h>

#include <PDip/PImageHeader.h>

#include <vector>

/// Statistics of some rows of a picture, so that several threads can share it. Each row is read
/// once: what is counted, and the green samples for the focus, come from the same pass. Aligned, so
/// that two threads never write to the same line of the cache, or to neighbouring ones, which
/// processors read together. One thread.
template <typename Layout>
class alignas(128) PBandAnalysis {
public:
    /// The rows from `first` up to, but not including, `end`: at most 2^31 pixels. Throws
    /// std::bad_alloc.
    PBandAnalysis(const unsigned char* pixels, const PImageHeader& header, long first, long end)
        : m_pixels(pixels)
        , m_header(header)
        , m_first(first)
        , m_end(end) {
        for (auto& row : m_green)
            row.resize(Layout::isGrey ? 0 : std::size_t(header.width()));
    }

    /// Reads the rows, and those next to them for the gradient. Allocates nothing.
    void run() noexcept;
    /// Adds what run() has counted.
    void addTo(PFrameAnalysis& analysis, PGradient::Sums& gradient) const;

private:
    static constexpr std::size_t block = 128; // pixels that are counted while the next are split

    const unsigned char* rowAt(long y) const {
        return m_pixels + std::size_t(y) * m_header.bytesPerLine();
    }
    const unsigned char* greenAt(long y) const {
        return Layout::isGrey ? rowAt(y) : m_green[std::size_t(y) % 3].data();
    }
    void readRow(long y, bool isCounted);
    void countGrey(const unsigned char* row);

    const unsigned char* m_pixels;
    PImageHeader m_header;
    long m_first;
    long m_end;
    std::vector<unsigned char> m_green[3]; ///< of the last three rows
    PPairCounts m_firstAndSecond;          ///< bytes in memory; of grey: neighbours
    PPairCounts m_thirdAndLuma;
    PPairCounts::Counts m_single{}; ///< grey pixels without a neighbour
    PRowSplit::Clipped m_clipped;
    PGradient::Sums m_gradient;
};

template <typename Layout>
void PBandAnalysis<Layout>::countGrey(const unsigned char* row) {
    const auto width = std::size_t(m_header.width());
    for (std::size_t x = 0; x + 1 < width; x += 2)
        m_firstAndSecond.addAt(row + x);
    if (width % 2 != 0)
        ++m_single[row[width - 1]];
}

template <typename Layout>
void PBandAnalysis<Layout>::readRow(long y, bool isCounted) {
    const unsigned char* row = rowAt(y);
    if constexpr (Layout::isGrey) {
        if (isCounted)
            countGrey(row);
        return;
    }
    static const PRowSplit::Split split = PRowSplit::fastest<Layout>();
    const auto width = std::size_t(m_header.width());
    PRowSplit::Clipped uncounted;
    for (std::size_t x = 0; x < width; x += block) {
        quint16 thirdAndLuma[block];
        const std::size_t count = std::min(block, width - x);
        const unsigned char* pixel = row + x * Layout::bytes;
        split(pixel, count, {m_green[std::size_t(y) % 3].data() + x, thirdAndLuma},
              isCounted ? m_clipped : uncounted);
        for (std::size_t i = 0; isCounted && i < count; ++i, pixel += Layout::bytes) {
            m_firstAndSecond.addAt(pixel);
            m_thirdAndLuma.add(thirdAndLuma[i]);
        }
    }
}

template <typename Layout>
void PBandAnalysis<Layout>::run() noexcept {
    const PGradient::Add addGradient = PGradient::fastest();
    const long last = m_header.height() - 1;
    for (long y = std::max(m_first - 1, 0L); y <= std::min(m_end, last); ++y) {
        readRow(y, y >= m_first && y < m_end);
        const long middle = y - 1;
        if (middle >= std::max(m_first, 1L) && middle < m_end)
            addGradient(greenAt(middle - 1), greenAt(middle), greenAt(y),
                        std::size_t(m_header.width()), m_gradient);
    }
}

template <typename Layout>
void PBandAnalysis<Layout>::addTo(PFrameAnalysis& analysis, PGradient::Sums& gradient) const {
    if constexpr (Layout::isGrey) {
        PFrameAnalysis::Counts& grey = analysis.channels[0];
        m_firstAndSecond.addTo(grey, grey);
        for (std::size_t value = 0; value < grey.size(); ++value)
            grey[value] += m_single[value];
    } else {
        // Red is channel 0. Green is the second byte in memory, red the first or the third.
        m_firstAndSecond.addTo(analysis.channels[Layout::red == 0 ? 0 : 2], analysis.channels[1]);
        m_thirdAndLuma.addTo(analysis.channels[Layout::red == 0 ? 2 : 0], analysis.luma);
    }
    analysis.over += m_clipped.over;
    analysis.under += m_clipped.under;
    gradient.squares += m_gradient.squares;
    gradient.samples += m_gradient.samples;
}
