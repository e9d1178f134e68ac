// SPDX-License-Identifier: MIT
#include <figure/FigureProgram.h>
#include <view/StallProbe.h>
#include <view/Viewer.h>

#include <QApplication>

#include <memory>

// The viewer while it records every frame of a camera of 20 megapixels and 30 frames a second, with
// the picture live.

namespace {

constexpr int turns = 9;
constexpr double framesASecond = 30;
constexpr int framesForStall = 30;
constexpr int framesForLoss = 100;

double measureStall(Viewer& viewer) {
    viewer.show(Viewer::large());
    StallProbe probe;
    viewer.record();
    const Durations late = probe.finish();
    viewer.pause();
    viewer.removeRecording();
    return late.longest();
}

/// The frames that fell due during a recording, and that the camera could not deliver because it
/// was kept waiting.
double countLost(Viewer& viewer) {
    viewer.show(Viewer::large());
    const quint64 before = viewer.lostFrames();
    viewer.record();
    const quint64 lost = viewer.lostFrames() - before;
    viewer.pause();
    viewer.removeRecording();
    return double(lost);
}

FigurePair prepareStall() {
    const auto viewer = std::make_shared<Viewer>(framesForStall);
    return {[=] { return measureStall(*viewer); }, [] { return 1000 / framesASecond; }};
}

FigurePair prepareLoss() {
    const auto viewer = std::make_shared<Viewer>(framesForLoss);
    return {[=] { return countLost(*viewer); }, {}};
}

} // namespace

int main(int argc, char* argv[]) {
    Viewer::prepareProgram();
    const QApplication application(argc, argv);
    FigureProgram::add({"view/stall-recording", "longest stall while every frame is recorded",
                        "one frame period", "ms", 0.7, Figure::Bound::Ratio, turns},
                       prepareStall);
    FigureProgram::add({"view/lost-frames", "not made while 100 frames are recorded, 20 MP, 30 fps",
                        "", "frames", 0, Figure::Bound::Value, turns},
                       prepareLoss);
    return FigureProgram::run(argc, argv);
}
