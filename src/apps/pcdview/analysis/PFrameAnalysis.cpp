// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <apps/pcdview/analysis/PBandAnalysis.h>
#include <apps/pcdview/view/PPixelLayout.h>

#include <PCore/PFaultStack.h>

#include <QScopeGuard>

#include <algorithm>
#include <thread>

namespace {

constexpr double unusedShare = 0.001; // of the samples, at either end

constexpr quint64 pixelsPerThread = 250'000; // starting one for fewer takes longer than it saves
constexpr quint64 mostThreads = 4;           // with more, all would wait for memory
constexpr quint64 mostPixels = quint64(1) << 31; // of a band

/// On threads of their own, but for the first.
template <typename Bands>
void runAll(Bands& bands) {
    // From the analyser's thread to those that read the other bands, and back by joining them.
    std::vector<std::thread> threads;
    const auto joinAll = qScopeGuard([&] {
        for (std::thread& thread : threads)
            thread.join();
    });
    for (std::size_t i = 1; i < bands.size(); ++i)
        threads.emplace_back([&band = bands[i]] {
            PFaultStack::giveThread();
            band.run();
        });
    bands.front().run();
}

int countThreads(quint64 pixels) {
    const quint64 cores = std::max(1u, std::thread::hardware_concurrency());
    return int(std::clamp<quint64>(pixels / pixelsPerThread, 1, std::min(cores, mostThreads)));
}

/// The squares per pixel, over the square of the mean sample; of the inner pixels.
double computeFocus(const PGradient::Sums& sums, const PImageHeader& header) {
    const double count = double(header.width() - 2) * double(header.height() - 2);
    const auto samples = double(sums.samples);
    return samples > 0 ? double(sums.squares) * count / (samples * samples) : 0;
}

template <typename Layout>
void analyse(const unsigned char* pixels, const PImageHeader& header, PFrameAnalysis& analysis) {
    const long count = std::min(
        header.height(),
        long(std::max<quint64>(quint64(analysis.threads), analysis.pixels / mostPixels + 1)));
    std::vector<PBandAnalysis<Layout>> bands;
    for (long i = 0; i < count; ++i)
        bands.emplace_back(pixels, header, header.height() * i / count,
                           header.height() * (i + 1) / count);
    runAll(bands);
    PGradient::Sums gradient;
    analysis.channels.resize(Layout::isGrey ? 1 : 3);
    for (const auto& band : bands)
        band.addTo(analysis, gradient);
    if (Layout::isGrey) {
        analysis.luma = analysis.channels.front();
        analysis.over = analysis.luma.back();
        analysis.under = analysis.luma.front();
    }
    analysis.focus = computeFocus(gradient, header);
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
    analysis.threads = countThreads(analysis.pixels);
    withPixelLayout(header.format(),
                    [&](auto layout) { analyse<decltype(layout)>(pixels, header, analysis); });
    return analysis;
}
