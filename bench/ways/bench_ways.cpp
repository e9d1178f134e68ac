// SPDX-License-Identifier: MIT
#include <ways/TouchedMemory.h>
#include <ways/WayProgram.h>

#include <figure/FigureProgram.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

// What each way for frames out of a camera costs, beside a frame sink in the camera's own process.
// Each is the program that users run, with the stub SDK, whose camera sends a frame when it is told
// to: making a frame costs none of them anything. Only the processor time and the memory of that
// program count, not those of this one, which reads the pipe.

namespace {

constexpr StubRemote::Request large{5440, 3648, 24};
constexpr StubRemote::Request small{640, 480, 8};
constexpr int firstFrames = 4; // until memory and caches are as in a long stream
constexpr int turns = 9;
constexpr int copyTurns = 3; // no times, so they differ little

/// Frames in a turn. Files grow until the end of the run, so those that are written are few.
struct Frames {
    int cpu;
    int latency;
    int smallLatency;
};

Frames countFrames(const Way& way) {
    return way.arrival == Way::Arrival::Rests ? Frames{2, 1, 0} : Frames{4, 5, 51};
}

using ProgramPtr = std::shared_ptr<WayProgram>;

double countBytes(const StubRemote::Request& frame) {
    return double(frame.width) * frame.height * frame.bits / 8;
}

ProgramPtr startProgram(const Way& way, const StubRemote::Request& frame,
                        WayProcess::Memory memory = WayProcess::Memory::Usual) {
    auto program = std::make_shared<WayProgram>(way, memory);
    for (int i = 0; i < firstFrames; ++i)
        program->pass(frame);
    return program;
}

/// Milliseconds of processor time for a gigabyte of pixels.
double measureCpu(WayProgram& program, int frames) {
    program.waitForRest(); // what is left of an earlier turn is not in this one
    const double before = program.process().cpuMs();
    for (int i = 0; i < frames; ++i)
        program.pass(large);
    program.waitForRest();
    return (program.process().cpuMs() - before) * 1e9 / (frames * countBytes(large));
}

/// The median of the microseconds from the callback to the arrival.
double measureLatency(WayProgram& program, const StubRemote::Request& frame, int frames) {
    std::vector<double> times;
    for (int i = 0; i < frames; ++i) {
        times.push_back(program.pass(frame));
        std::this_thread::sleep_for(std::chrono::milliseconds(1)); // as at 1000 frames a second
    }
    const auto middle = times.begin() + frames / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// How often the pixels of a frame are in memory that the program touches for it, or are handed to
/// the kernel, apart from the camera's own.
double countCopies(WayProgram& program) {
    TouchedMemory memory(program.process().id());
    program.waitForRest();
    memory.begin();
    program.pass(large);
    program.waitForRest();
    return memory.bytes() / countBytes(large) - 1;
}

/// Measuring nothing must not look like nothing to measure: one copy in the sink's way, and another
/// that a sink makes and forgets at once.
void requireThatCopiesAreCounted() {
    static const bool areCounted = [] {
        const auto memory = WayProcess::Memory::Keeps;
        const double sink = countCopies(*startProgram(Way::sink(), large, memory));
        const double copying = countCopies(*startProgram(Way::copyingSink(), large, memory));
        return sink > 0.95 && copying > sink + 0.95;
    }();
    if (!areCounted)
        throw std::runtime_error("copies are not counted");
}

FigurePair prepareCopies(const Way& way) {
    requireThatCopiesAreCounted();
    const ProgramPtr ours = startProgram(way, large, WayProcess::Memory::Keeps);
    return {[=] { return countCopies(*ours); }, {}};
}

FigurePair prepareCpu(const Way& way) {
    const ProgramPtr ours = startProgram(way, large);
    const ProgramPtr sink = startProgram(Way::sink(), large);
    const int frames = countFrames(way).cpu;
    return {[=] { return measureCpu(*ours, frames); }, [=] { return measureCpu(*sink, frames); }};
}

FigurePair prepareLatency(const Way& way, const StubRemote::Request& frame, int frames) {
    const ProgramPtr ours = startProgram(way, frame);
    const ProgramPtr sink = startProgram(Way::sink(), frame);
    return {[=] { return measureLatency(*ours, frame, frames); },
            [=] { return measureLatency(*sink, frame, frames); }};
}

void add(const Way& way, const Figure& figure, const FigureProgram::Prepare& prepare) {
    if (way.missing.empty())
        FigureProgram::add(figure, prepare);
    else
        FigureProgram::addMissing(figure, "install " + way.missing);
}

/// What each way may cost; none: the figure would say nothing.
struct Targets {
    double copies = 0;
    double cpu = 0;
    double latency = 0;
    double smallLatency = 0;
};

const std::map<std::string, Targets> targets{
    {"sink", {1.2, 0, 0, 0}},       {"pipe", {2.2, 4.5, 5, 15}},  {"gstreamer", {1.2, 1.2, 1.2, 8}},
    {"python", {1.2, 1.2, 1.2, 8}}, {"ome-tiff", {2.2, 5, 6, 0}}, {"ome-zarr", {3.3, 16, 12, 0}}};

void addWay(const Way& way) {
    const Targets& most = targets.at(way.name);
    const std::string sink = "a frame sink in the program";
    const auto name = [&](const char* subject) { return "ways/" + way.name + "/" + subject; };
    add(way,
        {name("copies"), way.text + ", a frame of 20 MP", "", "copies", most.copies,
         Figure::Bound::Value, copyTurns},
        [way] { return prepareCopies(way); });
    if (most.cpu > 0)
        add(way,
            {name("cpu"), way.text + ", CPU time of a GB", sink, "ms", most.cpu,
             Figure::Bound::Ratio, turns},
            [way] { return prepareCpu(way); });
    if (most.latency > 0)
        add(way,
            {name("latency-20MP"), way.text + ", cbData to arrival, p50", sink, "us", most.latency,
             Figure::Bound::Ratio, turns},
            [way] { return prepareLatency(way, large, countFrames(way).latency); });
    if (most.smallLatency > 0)
        add(way,
            {name("latency-VGA"), way.text + ", cbData to arrival, p50", sink, "us",
             most.smallLatency, Figure::Bound::Ratio, turns},
            [way] { return prepareLatency(way, small, countFrames(way).smallLatency); });
}

} // namespace

int main(int argc, char** argv) {
    addWay(Way::sink());
    for (const Way& way : Way::others())
        addWay(way);
    return FigureProgram::run(argc, argv);
}
