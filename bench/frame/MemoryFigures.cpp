// SPDX-License-Identifier: MIT
#include <frame/MemoryFigures.h>

#include <figure/FigureProgram.h>
#include <frame/LargeAllocations.h>
#include <frame/SdkThread.h>
#include <frame/SteadyStream.h>

#include <PCd/device/PDevice.h>

#include <PDip/PBufferPool.h>

#include <benchmark/benchmark.h>

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <future>
#include <memory>
#include <stdexcept>

namespace {

constexpr int width = 5440; // rows without padding
constexpr int height = 3648;
constexpr int steadyFrom = 5; // the number of a frame
constexpr int steadyFrames = 100;
constexpr double mebibyte = 1024 * 1024;
constexpr std::size_t budget = std::size_t(512) << 20;
constexpr int framesTooMany = 5;

std::shared_ptr<SteadyStream> makeLargeStream() {
    return std::make_shared<SteadyStream>(StubFrame(width, height, 24));
}

long countPageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt + usage.ru_majflt;
}

/// Measuring nothing must not look like nothing to measure.
void requireThatAllocationsAreCounted() {
    constexpr std::size_t size = std::size_t(100) << 10;
    const long before = LargeAllocations::count();
    void* const heap = std::malloc(size);
    benchmark::DoNotOptimize(heap);
    std::free(heap);
    void* const mapped =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    munmap(mapped, size);
    if (LargeAllocations::count() != before + 2)
        throw std::runtime_error("large allocations are not counted");
}

/// What a count grows by for each frame of a steady stream, callback and delivery. The first frames
/// after a pause are not part of the stream.
double measureSteady(const SteadyStream& stream, long (*count)()) {
    int frames = 0;
    long atStart = 0;
    const auto pushAndCount = [&] {
        stream.push();
        if (++frames == steadyFrom)
            atStart = count();
    };
    long atEnd = 0;
    SdkThread::run([&] {
        SdkThread::repeat(steadyFrom + steadyFrames, pushAndCount,
                          [&] { return stream.isDelivered(); });
        atEnd = count();
    });
    return double(atEnd - atStart) / steadyFrames;
}

FigurePair preparePageFaults() {
    const auto stream = makeLargeStream();
    return {[=] { return measureSteady(*stream, countPageFaults); }, {}};
}

FigurePair prepareAllocations() {
    requireThatAllocationsAreCounted();
    const auto stream = makeLargeStream();
    return {[=] { return measureSteady(*stream, LargeAllocations::count); }, {}};
}

/// Resident memory of this process, in bytes.
double readResident() {
    std::ifstream statistics("/proc/self/statm");
    double size = 0; // in pages
    double resident = 0;
    if (!(statistics >> size >> resident))
        throw std::runtime_error("/proc/self/statm could not be read");
    return resident * double(sysconf(_SC_PAGESIZE));
}

/// Every frame is either waiting for the main thread or counted as dropped, and in the end none is
/// left.
void requireExactLedger(const SteadyStream& stream, const PFrameLedger& before, quint64 pushed) {
    const PFrameLedger blocked = stream.device().frameLedger().since(before);
    while (!stream.isDelivered())
        QCoreApplication::sendPostedEvents(); // each delivers for some milliseconds only
    const PFrameLedger after = stream.device().frameLedger().since(before);
    const bool isExact =
        blocked.isBalanced() && after.isBalanced() && after.produced == pushed &&
        blocked.waiting == budget / stream.frame().size() &&
        blocked.waiting == after.count(PFrameOutcome::Delivered) &&
        after.count(PFrameOutcome::Delivered) + after.count(PFrameOutcome::DroppedWaiting) ==
            pushed;
    if (!isExact)
        throw std::runtime_error("the ledger is not exact");
}

/// The most memory, in MiB, that frames take while the main thread is blocked and more of them
/// come than may wait.
double measureBlocked(const SteadyStream& stream) {
    const int frames = int(budget / stream.frame().size()) + framesTooMany;
    stream.device().setFrameByteLimit(budget);
    PBufferPool::instance().trim(); // memory of earlier frames would be missing in the difference
    const PFrameLedger before = stream.device().frameLedger();
    const double atStart = readResident();
    double most = atStart;
    const auto pushAll = [&] {
        for (int i = 0; i < frames; ++i) {
            stream.push();
            most = std::max(most, readResident());
        }
    };
    std::async(std::launch::async, pushAll).get(); // the main thread does nothing else
    requireExactLedger(stream, before, quint64(frames));
    return (most - atStart) / mebibyte;
}

/// What the host allowed, one frame for the view and one that is being copied.
double computeAllowed() {
    return (double(budget) + 2.0 * width * height * 3) / mebibyte;
}

/// A device of its own each time: the first one would leave its frames in the pool.
FigurePair prepareBlocked() {
    return {[=] { return measureBlocked(*makeLargeStream()); }, computeAllowed};
}

} // namespace

void MemoryFigures::add() {
    const auto none = Figure::Bound::Value;
    FigureProgram::add({"steady/page-faults", "a frame of 20 MP, 24 bit", "", "faults", 0, none, 9},
                       preparePageFaults);
    FigureProgram::add(
        {"steady/allocations", "a frame of 20 MP, 24 bit", "", "over 64 KiB", 0, none, 9},
        prepareAllocations);
    FigureProgram::add({"blocked/20MP-24bit", "most memory for frames", "budget and two frames",
                        "MiB", 1.02, Figure::Bound::Ratio, 9},
                       prepareBlocked);
}
