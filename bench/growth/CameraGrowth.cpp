// SPDX-License-Identifier: MIT
#include <growth/Growth.h>
#include <growth/GrowthCurve.h>

#include <devices/OpenCameras.h>
#include <devices/UsedMemory.h>

#include <figure/Stopwatch.h>

namespace {

constexpr int openings = 9;
constexpr int camerasInAll = 64; // at least, in each opening

using Call = void();

double measureTime(OpenCameras& cameras, int count) {
    double total = 0;
    int opened = 0;
    for (; opened < camerasInAll; opened += count) {
        cameras.replace(count);
        total += Stopwatch::threadMs([&] { cameras.find(); });
    }
    return total / opened;
}

double measureMemory(OpenCameras& cameras, int count) {
    auto* const clearJournal = cameras.sdkFunction<Call>("ToupcamSim_clearJournal");
    cameras.replace(count);
    clearJournal();
    const double before = UsedMemory::heapKib();
    cameras.open();
    clearJournal();
    return (UsedMemory::heapKib() - before) / count;
}

GrowthCurve::Point measureCameras(double size) {
    const int count = int(size);
    OpenCameras cameras;
    GrowthCurve::Point point;
    point.second = measureMemory(cameras, count);
    point.first = GrowthCurve::takeMedian(openings, [&] { return measureTime(cameras, count); });
    return point;
}

} // namespace

void Growth::addCameras() {
    GrowthCurve::add({"cameras", "enumerate and open", "cameras", "ms for each camera",
                      "KiB for each camera, simulated SDK included"},
                     {1, 2, 4, 8, 16, 32, 64, 128}, measureCameras);
}
