// SPDX-License-Identifier: MIT
#include <stub/StubHost.h>
#include <ways/WayArrival.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PFrameSink.h>

#include <QCoreApplication>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>

// A program with a frame sink, for bench_ways: the shortest way to a camera's frames.

namespace {

/// Writes the time of each frame.
class TimeSink : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame&, Kind) override { return WayArrival::report(); }
};

/// The same with a copy that it does not need: bench_ways must count that one.
class CopyingSink : public TimeSink {
public:
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override {
        const PDIP::ImageRawData data = frame.image.rawData(PDIP::AccessMode::Read);
        void* const copy = std::malloc(data.size());
        if (copy == nullptr)
            return false;
        std::memcpy(copy, data.constData(), data.size());
        asm volatile("" : : "r"(copy) : "memory"); // it counts as used
        std::free(copy);
        return TimeSink::takeFrame(frame, kind);
    }
};

std::shared_ptr<PFrameSink> makeSink(const char* option) {
    if (option != nullptr && std::strcmp(option, "--copy") == 0)
        return std::make_shared<CopyingSink>();
    return std::make_shared<TimeSink>();
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    try {
        StubHost host;
        host.device().addFrameSink(makeSink(argc > 1 ? argv[1] : nullptr));
        host.startStream();
        return QCoreApplication::exec();
    } catch (const std::exception& error) {
        qCritical("ways_sink: %s", error.what());
        return 1;
    }
}
