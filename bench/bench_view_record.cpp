// SPDX-License-Identifier: MIT
#include <figure/FigureProgram.h>
#include <view/StallProbe.h>
#include <view/Viewer.h>

#include <QApplication>

#include <cmath>
#include <memory>

// The viewer while it records every frame of a camera of 20 megapixels and 30 frames a second, with
// the picture live.

namespace {

constexpr int turns = 9;
constexpr double framesASecond = 30;
constexpr int framesForStall = 30;
constexpr int framesForLoss = 100;

using Clock = std::chrono::steady_clock;

double measureStall(Viewer& viewer) {
    viewer.show(Viewer::large());
    StallProbe probe;
    viewer.record();
    const Durations late = probe.finish();
    viewer.pause();
    viewer.removeRecording();
    return late.longest();
}

/// The frames that fell due during a recording, and that the camera did not make because it was
/// kept waiting.
double countLost(Viewer& viewer) {
    viewer.show(Viewer::large());
    const quint64 before = viewer.producedFrames();
    const Clock::time_point begin = Clock::now();
    viewer.record();
    const std::chrono::duration<double> taken = Clock::now() - begin;
    const double made = double(viewer.producedFrames() - before);
    viewer.pause();
    viewer.removeRecording();
    // Up to one frame is due at any moment.
    return std::max(std::floor(taken.count() * framesASecond - made), 0.0);
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
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setOrganizationName(u"pcd"_qs);
    QApplication::setApplicationName(u"pcdview"_qs);
    FigureProgram::add({"view/stall-recording", "longest stall while every frame is recorded",
                        "one frame period", "ms", 0.7, Figure::Bound::Ratio, turns},
                       prepareStall);
    FigureProgram::add({"view/lost-frames", "not made while 100 frames are recorded, 20 MP, 30 fps",
                        "", "frames", 0, Figure::Bound::Value, turns},
                       prepareLoss);
    return FigureProgram::run(argc, argv);
}
