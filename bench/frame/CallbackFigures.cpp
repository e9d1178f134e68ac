// SPDX-License-Identifier: MIT
#include <frame/CallbackFigures.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>
#include <frame/SteadyStream.h>
#include <frame/WarmCopy.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QImage>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

struct Size {
    const char* name;
    int width;
    int height;
};

constexpr int callbackTurns = 9;

constexpr Size full{"2MP", 1920, 1080};
constexpr Size large{"20MP", 5440, 3648};
constexpr Size largest{"61MP", 9568, 6380};

StubFrame makeFrame(const Size& size, int bits) {
    return {size.width, size.height, bits};
}

/// Frames measured at a time: as many as have this many bytes together, so that small ones are
/// measured as exactly as large ones.
int countRepetitions(const StubFrame& frame) {
    constexpr std::size_t bytes = std::size_t(700) << 20;
    return int(bytes / frame.size()) + 2;
}

/// Milliseconds of this thread for a piece of work with a frame. `finish` follows it, and is not
/// part of it.
template <typename Work, typename Finish>
double measureMs(const StubFrame& frame, Work&& work, Finish&& finish) {
    const int times = countRepetitions(frame);
    double sum = 0;
    for (int i = 0; i < times; ++i) {
        sum += Stopwatch::threadMs(work);
        finish();
    }
    return sum / times;
}

/// The callback, on the main thread: what it takes to wake another one is a matter of the delivery,
/// and has its figures there.
double measureCallback(const SteadyStream& stream) {
    const int before = stream.count();
    int pushed = 0;
    const auto push = [&] {
        stream.push();
        ++pushed;
    };
    const double cost =
        measureMs(stream.frame(), push, [] { QCoreApplication::sendPostedEvents(); });
    if (stream.count() - before != pushed || !stream.isDelivered())
        throw std::runtime_error("not every frame arrived");
    return cost;
}

/// Something else with a frame, measured as the callback is.
template <typename Work>
double measureWork(const StubFrame& frame, Work&& work) {
    return measureMs(frame, work, [] { QCoreApplication::sendPostedEvents(); });
}

FigurePair compareWithWarmCopy(const Size& size, int bits) {
    const auto stream = std::make_shared<SteadyStream>(makeFrame(size, bits));
    const auto copy = std::make_shared<WarmCopy>(stream->frame());
    return {[=] { return measureCallback(*stream); },
            [=] { return measureWork(stream->frame(), [&] { copy->take(stream->frame()); }); }};
}

void copyIntoNewMemory(const StubFrame& frame) {
    void* const memory = std::malloc(frame.size());
    if (memory == nullptr)
        throw std::runtime_error("no memory for a frame");
    std::memcpy(memory, frame.pixels(), frame.size());
    benchmark::DoNotOptimize(memory);
    benchmark::ClobberMemory();
    std::free(memory);
}

FigurePair compareWithNewMemory() {
    const auto stream = std::make_shared<SteadyStream>(makeFrame(large, 24));
    return {
        [=] { return measureCallback(*stream); },
        [=] { return measureWork(stream->frame(), [&] { copyIntoNewMemory(stream->frame()); }); }};
}

FigurePair compareWithQImage() {
    const auto stream = std::make_shared<SteadyStream>(makeFrame(large, 24));
    const StubFrame& frame = stream->frame();
    const auto image = std::make_shared<const QImage>(frame.pixels(), frame.width(), frame.height(),
                                                      QImage::Format_BGR888);
    return {[=] { return measureCallback(*stream); },
            [=] {
                return measureWork(stream->frame(), [&] {
                    const QImage copy = image->copy();
                    benchmark::DoNotOptimize(copy.constBits());
                });
            }};
}

void addWarmCopy(const Size& size, int bits, double target) {
    const std::string name =
        std::string("callback/") + size.name + "-" + std::to_string(bits) + "bit";
    FigureProgram::add({name, "a frame in cbData, with a sink", "memcpy into warm memory", "ms",
                        target, Figure::Bound::Ratio, callbackTurns},
                       [=] { return compareWithWarmCopy(size, bits); });
}

} // namespace

void CallbackFigures::add() {
    addWarmCopy(full, 8, 1.05);
    addWarmCopy(full, 24, 1.15);
    for (const Size& size : {large, largest}) {
        for (const int bits : {8, 24})
            addWarmCopy(size, bits, 1.03);
    }
    FigureProgram::add({"callback/20MP-24bit-malloc", "a frame in cbData, with a sink",
                        "malloc, memcpy and free", "ms", 0.15, Figure::Bound::Ratio, callbackTurns},
                       compareWithNewMemory);
    FigureProgram::add({"callback/20MP-24bit-QImage", "a frame in cbData, with a sink",
                        "QImage::copy", "ms", 0.15, Figure::Bound::Ratio, callbackTurns},
                       compareWithQImage);
}
