// SPDX-License-Identifier: MIT
#include <devices/DeviceFigures.h>
#include <devices/OpenCameras.h>

#include <figure/Stopwatch.h>

namespace {

constexpr int many = 128;
constexpr int few = 8;

/// Milliseconds for each camera; as many cameras are opened in all, whatever the number at a time.
double measureCamera(OpenCameras& cameras, int atATime) {
    double total = 0;
    for (int opened = 0; opened < many; opened += atATime) {
        cameras.replace(atATime);
        total += Stopwatch::threadMs([&] { cameras.find(); });
        if (cameras.devices().size() != atATime)
            return -1;
    }
    return total / many;
}

} // namespace

FigurePair DeviceFigures::findCameras() {
    const auto cameras = std::make_shared<OpenCameras>();
    return {[=] { return measureCamera(*cameras, many); },
            [=] { return measureCamera(*cameras, few); }};
}
