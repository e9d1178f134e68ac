// SPDX-License-Identifier: MIT
#include <figure/FigureProgram.h>
#include <view/StallProbe.h>
#include <view/TimedApplication.h>
#include <view/Viewer.h>

#include <memory>

// The viewer with a live picture: what painting it costs, and how long the user waits for the
// window.

namespace {

constexpr std::size_t paintsATurn = 10;
constexpr int turns = 9;
constexpr std::chrono::seconds watchFor(2);
constexpr double framePeriodMs = 1000.0 / 30;

TimedApplication& application() {
    return *static_cast<TimedApplication*>(QCoreApplication::instance());
}

/// The median in milliseconds.
double measurePainting(Viewer& viewer, const Viewer::Sensor& sensor) {
    viewer.show(sensor);
    application().takePaints();
    const bool isDone = runUntil([] { return application().paints().count() >= paintsATurn; },
                                 std::chrono::seconds(30));
    viewer.pause();
    return isDone ? application().takePaints().median() : -1;
}

FigureProgram::Prepare preparePainting(const Viewer::Sensor& sensor) {
    return [sensor]() -> FigurePair {
        const auto viewer = std::make_shared<Viewer>();
        return {[=] { return measurePainting(*viewer, sensor); },
                [=] { return measurePainting(*viewer, Viewer::small()); }};
    };
}

double measureStall(Viewer& viewer) {
    viewer.show(Viewer::large());
    StallProbe probe;
    runUntil([] { return false; }, watchFor);
    const Durations late = probe.finish();
    viewer.pause();
    return late.longest();
}

FigurePair prepareStall() {
    const auto viewer = std::make_shared<Viewer>();
    return {[=] { return measureStall(*viewer); }, [] { return framePeriodMs; }};
}

} // namespace

int main(int argc, char* argv[]) {
    Viewer::prepareProgram();
    const TimedApplication application(argc, argv);
    FigureProgram::add({"view/paint-20MP", "painting a live frame of 20 megapixels",
                        "painting one of 1 megapixel", "ms", 1.3, Figure::Bound::Ratio, turns},
                       preparePainting(Viewer::large()));
    FigureProgram::add({"view/paint-61MP", "painting a live frame of 61 megapixels",
                        "painting one of 1 megapixel", "ms", 1.5, Figure::Bound::Ratio, turns},
                       preparePainting(Viewer::largest()));
    FigureProgram::add({"view/stall-live", "longest stall in two seconds, 20 MP at 30 fps live",
                        "one frame period", "ms", 0.35, Figure::Bound::Ratio, turns},
                       prepareStall);
    return FigureProgram::run(argc, argv);
}
