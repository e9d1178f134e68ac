// SPDX-License-Identifier: MIT
#include <growth/Growth.h>
#include <growth/GrowthCurve.h>

#include <devices/UsedMemory.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PFrameSink.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <PDip/PBufferPool.h>

#include <figure/Stopwatch.h>

#include <QCoreApplication>

#include <cmath>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace {

constexpr int frameRuns = 9;
constexpr double bytesInAll = 200e6; // at least, in each run

/// A device without a camera, to which the benchmark gives the frames.
class FrameDevice : public PDevice {
public:
    FrameDevice()
        : PDevice(nullptr) {}

    QByteArray getModel() const override { return "Frames"; }
    QByteArray getSerial() const override { return "1"; }
    bool tryLink() override { return true; }
    bool tryUnlink() override { return true; }
    bool tryStartStream() override { return true; }
    bool tryStopStream() override { return true; }
    PDeviceMode getCurrentMode() override { return {}; }
    bool trySetMode(const PDeviceMode&) override { return true; }
    QList<PDeviceMode> getSupportModes() override { return {}; }
    QList<PDeviceProperty*> getSupportProperties() override { return {}; }
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override { return {}; }
};

class CountingSink : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame&, Kind) override {
        ++taken;
        return true;
    }

    int taken = 0;
};

PImageHeader makeHeader(double megapixels) {
    const int height = int(std::sqrt(megapixels * 1e6 / 1.5));
    return PImageHeader(height * 3 / 2, height, PDIP::ColorFormat::Bgr);
}

void deliver(PDevice& device, const std::vector<unsigned char>& pixels,
             const PImageHeader& header) {
    PImage image;
    if (!image.create(header) || !image.set(pixels.data(), header))
        throw std::runtime_error("no memory for a frame");
    device.processFrameImage(image);
    image = PImage();
    QCoreApplication::processEvents();
}

/// Nanoseconds for each KiB of the pixels.
template <typename Work>
double measurePerKib(std::size_t bytes, const Work& work) {
    const int frames = std::max(1, int(bytesInAll / double(bytes)));
    const double total = Stopwatch::threadMs([&] {
        for (int i = 0; i < frames; ++i)
            work();
    });
    return total * 1e6 / frames / (double(bytes) / 1024);
}

GrowthCurve::Point measureFrames(double megapixels) {
    const PImageHeader header = makeHeader(megapixels);
    const std::vector<unsigned char> pixels(header.dataSize(), 0x55);
    PBufferPool::instance().trim(); // of the size before
    const double before = UsedMemory::residentKib();
    FrameDevice device;
    const auto sink = std::make_shared<CountingSink>();
    device.addFrameSink(sink);
    const double time = GrowthCurve::takeMedian(frameRuns, [&] {
        return measurePerKib(pixels.size(), [&] { deliver(device, pixels, header); });
    });
    if (sink->taken == 0 || device.frameLedger().count(PFrameOutcome::Delivered) == 0)
        throw std::runtime_error("no frame was delivered");
    return {time, (UsedMemory::residentKib() - before) * 1024 / double(pixels.size())};
}

GrowthCurve::Point measureCopies(double megapixels) {
    const std::vector<unsigned char> pixels(makeHeader(megapixels).dataSize(), 0x55);
    const double before = UsedMemory::residentKib();
    std::vector<unsigned char> target(pixels.size(), 1);
    const double time = GrowthCurve::takeMedian(frameRuns, [&] {
        return measurePerKib(pixels.size(), [&] {
            std::memcpy(target.data(), pixels.data(), pixels.size());
            benchmark::ClobberMemory();
        });
    });
    return {time, (UsedMemory::residentKib() - before) * 1024 / double(pixels.size())};
}

GrowthCurve::Names makeNames(const char* curve) {
    return {"frames", curve, "megapixels, 24 bits each", "ns for each KiB of pixels",
            "resident memory, in frames"};
}

} // namespace

void Growth::addFrames() {
    const std::vector<double> megapixels{0.3, 0.6, 1.2, 2, 5, 10, 20, 40, 61};
    GrowthCurve::add(makeNames("a frame, to sinks and listeners"), megapixels, measureFrames);
    GrowthCurve::add(makeNames("memcpy into warm memory"), megapixels, measureCopies);
}
