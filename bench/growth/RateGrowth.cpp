// SPDX-License-Identifier: MIT
#include <growth/Growth.h>
#include <growth/GrowthCurve.h>

#include <devices/OpenCameras.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PFrameStamp.h>

#include <figure/Stopwatch.h>

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <vector>

namespace {

constexpr std::chrono::milliseconds streamTime(1000);

QJsonArray makeFastCamera(double framesPerSecond) {
    QJsonObject camera = CameraScene::describe(1);
    camera[u"resolutions"_qs] = QJsonArray{
        QJsonObject{{u"width"_qs, 640}, {u"height"_qs, 480}, {u"fps"_qs, framesPerSecond}}};
    camera[u"exposure"_qs] =
        QJsonObject{{u"min"_qs, 10}, {u"default"_qs, 100}, {u"auto"_qs, false}};
    return {camera};
}

void runLoopFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// What one camera's stream costs at this rate.
struct Stream {
    double busyForFrame = 0; ///< microseconds of the main thread
    double medianDelay = 0;  ///< microseconds from the callback to the main thread
    double reachedRate = 0;  ///< frames in a second
};

std::vector<double> collectDelays(PDevice* device, double* busyMs) {
    std::vector<double> delays;
    const auto note = [&delays](const PImage& image) {
        const auto waited = std::chrono::steady_clock::now() - PFrameStamp::of(image)->arrived;
        delays.push_back(std::chrono::duration<double, std::micro>(waited).count());
    };
    const auto connection = QObject::connect(device, &PDevice::imageChanged, device, note);
    *busyMs = Stopwatch::threadMs([] { runLoopFor(streamTime); });
    QObject::disconnect(connection);
    std::sort(delays.begin(), delays.end());
    return delays;
}

Stream measureStream(double framesPerSecond) {
    OpenCameras cameras;
    cameras.replace(makeFastCamera(framesPerSecond));
    cameras.open();
    PDevice* const device = cameras.devices().value(0);
    if (device == nullptr || !device->startStream().isOk())
        throw std::runtime_error("the camera did not start");
    cameras.settle();
    double busyMs = 0;
    const std::vector<double> delays = collectDelays(device, &busyMs);
    device->stopStream();
    if (delays.empty())
        throw std::runtime_error("no frame arrived");
    const auto count = double(delays.size());
    return {busyMs * 1e3 / count, delays[delays.size() / 2],
            count * 1000 / double(streamTime.count())};
}

/// Measured once for all curves.
Stream findStream(double framesPerSecond) {
    static std::map<double, Stream> known;
    const auto found = known.find(framesPerSecond);
    return found != known.end()
               ? found->second
               : known.emplace(framesPerSecond, measureStream(framesPerSecond)).first->second;
}

GrowthCurve::Names makeRateNames(const char* curve) {
    return {"rates", curve, "frames a second, 640 x 480", "microseconds for each frame",
            "frames that arrived in a second"};
}

} // namespace

void Growth::addRates() {
    const std::vector<double> rates{10, 30, 100, 300, 1000, 2000};
    GrowthCurve::add(makeRateNames("main thread busy"), rates, [](double rate) {
        const Stream stream = findStream(rate);
        return GrowthCurve::Point{stream.busyForFrame, stream.reachedRate};
    });
    GrowthCurve::add(makeRateNames("from the callback to the main thread, median"), rates,
                     [](double rate) {
                         const Stream stream = findStream(rate);
                         return GrowthCurve::Point{stream.medianDelay, stream.reachedRate};
                     });
}
