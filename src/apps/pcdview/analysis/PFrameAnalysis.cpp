// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <apps/pcdview/analysis/PFocusScore.h>
#include <apps/pcdview/view/PPixelLayout.h>

#include <algorithm>

namespace {

constexpr double unusedShare = 0.001; // of the samples, at either end

/// Counts at the largest distance: neighbouring pixels are often equal, and adding to the same
/// counter each time would make each addition wait for the last.
using FastCounts = std::array<std::array<quint32, 256>, 2>;

enum Table : std::size_t { red, green, blue, luma, tables };
using Tables = std::array<FastCounts, tables>;

void addTo(PFrameAnalysis::Counts& sums, FastCounts& counts) {
    for (auto& part : counts) {
        for (std::size_t value = 0; value < sums.size(); ++value)
            sums[value] += part[value];
        part.fill(0);
    }
}

/// A row is at most 2^31 pixels, so that its counts fit.
template <typename Layout>
void countRow(const unsigned char* row, long width, Tables& counts, PFrameAnalysis& analysis) {
    for (long x = 0; x < width; ++x, row += Layout::bytes) {
        const std::size_t part = std::size_t(x) & 1;
        const unsigned char g = row[Layout::green];
        ++counts[green][part][g];
        unsigned char highest = g;
        if constexpr (!Layout::isGrey) {
            const unsigned char r = row[Layout::red];
            const unsigned char b = row[Layout::blue];
            ++counts[red][part][r];
            ++counts[blue][part][b];
            // BT.601, in 256ths: 0.299, 0.587, 0.114.
            ++counts[luma][part][(77U * r + 150U * g + 29U * b) >> 8];
            highest = std::max({g, r, b});
        }
        analysis.over += highest == 255 ? 1 : 0;
        analysis.under += highest == 0 ? 1 : 0;
    }
}

template <typename Layout>
void countPixels(const unsigned char* pixels, const PImageHeader& header,
                 PFrameAnalysis& analysis) {
    Tables counts{};
    analysis.channels.resize(Layout::isGrey ? 1 : 3);
    for (long y = 0; y < header.height(); ++y) {
        countRow<Layout>(pixels + std::size_t(y) * header.bytesPerLine(), header.width(), counts,
                         analysis);
        for (std::size_t c = 0; c < analysis.channels.size(); ++c)
            addTo(analysis.channels[c], counts[Layout::isGrey ? green : c]);
        addTo(analysis.luma, counts[luma]);
    }
    if (Layout::isGrey)
        analysis.luma = analysis.channels.front();
    analysis.focus = PFocusScore::of<Layout>(pixels, header);
}

/// The first level at which more than this many samples have been seen.
template <typename Iterator>
int levelAfter(Iterator begin, Iterator end, double samples) {
    quint64 seen = 0;
    const auto found =
        std::find_if(begin, end, [&](quint64 count) { return double(seen += count) > samples; });
    return int(std::distance(begin, found));
}

} // namespace

double PFrameAnalysis::mean(std::size_t channel) const {
    double sum = 0;
    for (std::size_t value = 0; value < channels[channel].size(); ++value)
        sum += double(value) * double(channels[channel][value]);
    return pixels == 0 ? 0 : sum / double(pixels);
}

std::pair<int, int> PFrameAnalysis::usedLevels() const {
    std::pair<int, int> levels{255, 0};
    const double unused = unusedShare * double(pixels);
    for (const Counts& counts : channels) {
        levels.first = std::min(levels.first, levelAfter(counts.begin(), counts.end(), unused));
        const int fromAbove = levelAfter(counts.rbegin(), counts.rend(), unused);
        levels.second = std::max(levels.second, 255 - fromAbove);
    }
    return levels.first < levels.second ? levels : std::pair<int, int>{0, 255};
}

PFrameAnalysis PFrameAnalysis::of(const PImage& image) {
    PFrameAnalysis analysis;
    if (image.isNull())
        return analysis;
    const PImageHeader header = image.header();
    analysis.pixels = quint64(header.width()) * quint64(header.height());
    const unsigned char* const pixels = image.rawData(PDIP::AccessMode::Read).constData();
    withPixelLayout(header.format(),
                    [&](auto layout) { countPixels<decltype(layout)>(pixels, header, analysis); });
    return analysis;
}
