// SPDX-License-Identifier: MIT
#include <frame/DeliveryFigures.h>

#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>
#include <frame/OwnCore.h>
#include <frame/QueuedCalls.h>
#include <frame/SdkThread.h>
#include <frame/SteadyStream.h>
#include <frame/TimedArrivals.h>

#include <PCd/device/PDevice.h>

#include <QCoreApplication>
#include <QSemaphore>

#include <memory>
#include <stdexcept>
#include <thread>

namespace {

constexpr int calls = 500; // in a turn
constexpr int deliveryTurns = 11;

/// Frames of a small, fast camera.
std::shared_ptr<SteadyStream> makeFastStream() {
    return std::make_shared<SteadyStream>(StubFrame(640, 480, 8));
}

/// The time from the callback to imageChanged(), in microseconds.
double measureFrames(const SteadyStream& stream, double share) {
    TimedArrivals arrivals(calls);
    const auto connection =
        QObject::connect(&stream.device(), &PDevice::imageChanged, [&] { arrivals.arrived(); });
    arrivals.send([&] { stream.push(); });
    QObject::disconnect(connection);
    return arrivals.findQuantileUs(share);
}

/// The time from a queued call to its execution, in microseconds.
double measureCalls(double share) {
    TimedArrivals arrivals(calls);
    QueuedCalls queued([&] { arrivals.arrived(); });
    arrivals.send([&] { queued.post(); });
    return arrivals.findQuantileUs(share);
}

FigurePair compareTimes(double share) {
    const auto stream = makeFastStream();
    return {[=] { return measureFrames(*stream, share); }, [=] { return measureCalls(share); }};
}

/// Microseconds of the main thread for each thing that another thread sends to it, one at a time.
double measureReceiving(const SdkThread::Work& send) {
    QSemaphore sent;
    QSemaphore received;
    const OwnCore receiving(0);
    std::thread sender([&] {
        const OwnCore sending(1);
        for (int i = 0; i < calls; ++i) {
            send();
            sent.release();
            received.acquire();
        }
    });
    double sum = 0;
    for (int i = 0; i < calls; ++i) {
        sent.acquire();
        sum += Stopwatch::threadMs([] { QCoreApplication::sendPostedEvents(); });
        received.release();
    }
    sender.join();
    return sum * 1000 / calls;
}

double measureReceivingFrames(const SteadyStream& stream) {
    const PFrameLedger before = stream.device().frameLedger();
    const double cost = measureReceiving([&] { stream.push(); });
    const PFrameLedger ledger = stream.device().frameLedger().since(before);
    if (ledger.count(PFrameOutcome::Delivered) != quint64(calls))
        throw std::runtime_error("not every frame was delivered");
    return cost;
}

double measureReceivingCalls() {
    int count = 0;
    QueuedCalls queued([&] { ++count; });
    const double cost = measureReceiving([&] { queued.post(); });
    if (count != calls)
        throw std::runtime_error("not every call was made");
    return cost;
}

FigurePair compareReceiving() {
    const auto stream = makeFastStream();
    return {[=] { return measureReceivingFrames(*stream); }, measureReceivingCalls};
}

void addTime(const char* name, double share) {
    FigureProgram::add({name, "cbData to imageChanged, 1000 fps", "a queued call", "us", 1.5,
                        Figure::Bound::Ratio, deliveryTurns},
                       [=] { return compareTimes(share); });
}

} // namespace

void DeliveryFigures::add() {
    addTime("delivery/VGA-p50", 0.5);
    addTime("delivery/VGA-p99", 0.99);
    FigureProgram::add({"delivery/VGA-main-thread", "main thread for a frame", "a queued call",
                        "us", 1.5, Figure::Bound::Ratio, deliveryTurns},
                       compareReceiving);
}
