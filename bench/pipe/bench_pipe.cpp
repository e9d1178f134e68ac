// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PFrameOutlet.h>
#include <apps/common/pipe/PRawCoding.h>
#include <apps/common/pipe/PY4mCoding.h>

#include <pipe/PipeReader.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

// Frames of 20 megapixels and 24 bits through a pipe, compared with one copy of their bytes: what a
// frame sink of the same process pays that keeps the pixels.

namespace {

constexpr int frames = 8;
const PImageHeader header(5440, 3648, PDIP::ColorFormat::Bgr);

PDeviceFrame makeFrame() {
    PDeviceFrame frame;
    if (!frame.image.create(header))
        throw std::bad_alloc();
    const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Write);
    for (std::size_t i = 0; i < data.size(); ++i)
        data.data()[i] = static_cast<unsigned char>(i * 7);
    return frame;
}

std::unique_ptr<PFrameCoding> makeRaw() {
    return std::make_unique<PRawCoding>();
}

std::unique_ptr<PFrameCoding> makeY4m() {
    return std::make_unique<PY4mCoding>(PYuvConversion::Chroma::Quarter);
}

/// An outlet, a pipe, and a reader as fast as possible; the outlet is closed first.
struct OpenPipe {
    explicit OpenPipe(std::unique_ptr<PFrameCoding> coding) {
        auto target = std::make_unique<PStreamTarget>(reader.path());
        if (!target->tryOpen().value_or(PStatus::Failed).isOk())
            throw std::runtime_error("the pipe could not be opened");
        outlet = std::make_unique<PFrameOutlet>(std::move(coding), std::move(target));
    }

    /// Passes all frames on, waiting for each; false if one was lost.
    bool passOn(const PDeviceFrame& frame) const {
        for (int i = 0; i < frames; ++i)
            outlet->takeFrame(frame, PFrameSink::Kind::Live);
        outlet->end();
        return outlet->waitUntilFinished(std::chrono::minutes(1)) &&
               outlet->progress().tally.written == frames;
    }

    PipeReader reader;
    std::unique_ptr<PFrameOutlet> outlet;
};

using MakeCoding = std::unique_ptr<PFrameCoding> (*)();

/// Processor time in milliseconds for each gigabyte of pixels.
double measureCost(MakeCoding make, const PDeviceFrame& frame) {
    const OpenPipe pipe(make());
    bool isWhole = false;
    const double cost = Stopwatch::processMs([&] { isWhole = pipe.passOn(frame); });
    return isWhole ? cost * 1e9 / (frames * double(header.dataSize())) : -1;
}

/// The same for copying them to one place.
double measureCopy(const PDeviceFrame& frame, std::vector<unsigned char>& copy) {
    const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Read);
    const double cost = Stopwatch::processMs([&] {
        for (int i = 0; i < frames; ++i)
            std::memcpy(copy.data(), data.constData(), data.size());
    });
    return cost * 1e9 / (frames * double(header.dataSize()));
}

/// Milliseconds from a frame's arrival until the reader has its last byte.
double measureLatency(const PDeviceFrame& frame) {
    const OpenPipe pipe(makeRaw());
    const std::size_t size = frame.image.dataSize();
    return Stopwatch::wallMs([&] {
        pipe.outlet->takeFrame(frame, PFrameSink::Kind::Live);
        while (pipe.reader.bytes() < size)
            std::this_thread::yield();
    });
}

FigurePair prepareCost(MakeCoding make) {
    const PDeviceFrame frame = makeFrame();
    const auto copy = std::make_shared<std::vector<unsigned char>>(header.dataSize());
    return {[=] { return measureCost(make, frame); }, [=] { return measureCopy(frame, *copy); }};
}

FigurePair prepareLatency() {
    const PDeviceFrame frame = makeFrame();
    const auto copy = std::make_shared<std::vector<unsigned char>>(header.dataSize());
    return {[=] { return measureLatency(frame); },
            [=] {
                const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Read);
                return Stopwatch::wallMs(
                    [&] { std::memcpy(copy->data(), data.constData(), data.size()); });
            }};
}

} // namespace

int main(int argc, char** argv) {
    const std::string copied = "memcpy() of the same bytes, CPU time";
    FigureProgram::add(
        {"pipe/20MP-raw", "through a pipe as raw, CPU time of a GB", copied, "ms", 4.5},
        [] { return prepareCost(makeRaw); });
    FigureProgram::add(
        {"pipe/20MP-y4m", "through a pipe as y4m, CPU time of a GB", copied, "ms", 11},
        [] { return prepareCost(makeY4m); });
    FigureProgram::add({"pipe/20MP-latency", "frame to the reader's last byte",
                        "memcpy() of the same bytes", "ms", 3},
                       prepareLatency);
    return FigureProgram::run(argc, argv);
}
