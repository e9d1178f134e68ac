// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <PDip/PImage.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>

#include <QRandomGenerator>

#include <cstring>
#include <memory>
#include <stdexcept>

// Histogram, clipped shares and focus score of all pixels of a 20-megapixel colour frame, compared
// with reading its bytes once. On the wall, because several threads share the work; the processor
// time of all of them together is a figure of its own.

namespace {

/// Like the picture of a stained slice: colours that change slowly, under the noise of a camera.
PImage makeFrame() {
    PImage frame;
    const PImageHeader header(5440, 3648, PDIP::ColorFormat::Bgr);
    if (!frame.create(header))
        throw std::runtime_error("no memory for a frame");
    QRandomGenerator random(7);
    unsigned char* row = frame.rawData(PDIP::AccessMode::Write).data();
    for (long y = 0; y < header.height(); ++y, row += header.bytesPerLine()) {
        for (long x = 0; x < header.width(); ++x) {
            const quint32 noise = random.generate();
            for (int sample = 0; sample < 3; ++sample) {
                const long light = 60 + (x / 16 + y / (8 + 4 * sample)) % 160;
                row[x * 3 + sample] =
                    static_cast<unsigned char>(light + (noise >> (8 * sample) & 15));
            }
        }
    }
    return frame;
}

void analyse(const PImage& frame) {
    benchmark::DoNotOptimize(PFrameAnalysis::of(frame));
}

/// The sum of all bytes as words of eight, which compilers vectorise.
void readOnce(const PImage& frame) {
    const PDIP::ImageRawData data = frame.rawData(PDIP::AccessMode::Read);
    quint64 sum = 0;
    for (std::size_t i = 0; i < data.size() / 8; ++i) {
        quint64 word;
        std::memcpy(&word, data.constData() + i * 8, 8);
        sum += word;
    }
    benchmark::DoNotOptimize(sum);
}

FigurePair prepareRatio() {
    const auto frame = std::make_shared<const PImage>(makeFrame());
    return {[=] { return Stopwatch::wallMs([&] { analyse(*frame); }); },
            [=] { return Stopwatch::wallMs([&] { readOnce(*frame); }); }};
}

FigurePair prepareTime() {
    const auto frame = std::make_shared<const PImage>(makeFrame());
    return {[=] { return Stopwatch::wallMs([&] { analyse(*frame); }); }, {}};
}

FigurePair prepareProcessorTime() {
    const auto frame = std::make_shared<const PImage>(makeFrame());
    return {[=] { return Stopwatch::processMs([&] { analyse(*frame); }); }, {}};
}

} // namespace

int main(int argc, char** argv) {
    constexpr auto ours = "histogram, clipped shares, focus score";
    FigureProgram::add({"analysis/20MP-24bit", ours, "one read pass, one thread", "ms", 2.0},
                       prepareRatio);
    FigureProgram::add({"analysis/20MP-24bit-time", ours, "", "ms", 20, Figure::Bound::Value},
                       prepareTime);
    // Twice what may pass on the wall: two cores.
    FigureProgram::add({"analysis/20MP-24bit-cpu", "the same, CPU time of all threads", "", "ms",
                        40, Figure::Bound::Value},
                       prepareProcessorTime);
    return FigureProgram::run(argc, argv);
}
