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
#include <stdexcept>

namespace {

constexpr std::chrono::milliseconds streamTime(1000);
constexpr std::chrono::milliseconds runUp(200);

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

/// The stream of one camera, observed on the main thread.
class Stream {
public:
    explicit Stream(double framesPerSecond) {
        m_cameras.replace(makeFastCamera(framesPerSecond));
        m_cameras.open();
        m_device = m_cameras.devices().value(0);
        if (m_device == nullptr || !m_device->startStream().isOk())
            throw std::runtime_error("the camera did not start");
        runLoopFor(runUp);
        QObject::connect(m_device, &PDevice::imageChanged, m_device, [this](const PImage& image) {
            const auto waited = std::chrono::steady_clock::now() - PFrameStamp::of(image)->arrived;
            m_delays.push_back(std::chrono::duration<double, std::micro>(waited).count());
        });
        m_busyMs = Stopwatch::threadMs([] { runLoopFor(streamTime); });
        if (m_delays.empty())
            throw std::runtime_error("no frame arrived");
        std::sort(m_delays.begin(), m_delays.end());
    }
    ~Stream() { m_device->stopStream(); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    double busyForFrame() const { return m_busyMs * 1e3 / double(m_delays.size()); }
    double medianDelay() const { return m_delays[m_delays.size() / 2]; }
    /// Frames in a second.
    double reachedRate() const {
        return double(m_delays.size()) * 1000 / double(streamTime.count());
    }

private:
    OpenCameras m_cameras;
    PDevice* m_device = nullptr;
    std::vector<double> m_delays;
    double m_busyMs = 0;
};

GrowthCurve::Names makeRateNames(const char* curve) {
    return {"rates", curve, "frames a second, 640 x 480", "microseconds for each frame",
            "frames that arrived in a second"};
}

} // namespace

void Growth::addRates() {
    const std::vector<double> rates{10, 30, 100, 300, 1000, 2000};
    GrowthCurve::add(makeRateNames("main thread busy"), rates, [](double rate) {
        const Stream stream(rate);
        return GrowthCurve::Point{stream.busyForFrame(), stream.reachedRate()};
    });
    GrowthCurve::add(makeRateNames("from the callback to the main thread, median"), rates,
                     [](double rate) {
                         const Stream stream(rate);
                         return GrowthCurve::Point{stream.medianDelay(), stream.reachedRate()};
                     });
}
