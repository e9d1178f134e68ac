// SPDX-License-Identifier: MIT
#include <growth/Growth.h>
#include <growth/GrowthCurve.h>

#include <devices/UsedMemory.h>

#include <apps/common/ome/POmeStackWriter.h>

#include <figure/Stopwatch.h>

#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

namespace {

constexpr int side = 16; // pixels: the cost of a frame apart from its bytes

PDeviceFrame makeSmallFrame() {
    PDeviceFrame frame;
    if (!frame.image.create(side, side, PDIP::ColorFormat::Gray))
        throw std::bad_alloc();
    auto stamp = std::make_shared<PFrameStamp>();
    stamp->settings = std::make_shared<PDeviceSettings>();
    frame.stamp = std::move(stamp);
    return frame;
}

void checkWritten(const PStatus& status) {
    if (!status.isOk())
        throw std::runtime_error(status.reason().toStdString());
}

/// Microseconds of processor time for each frame, and KiB of the heap before the file is finished.
GrowthCurve::Point measureRecording(double size) {
    const auto frames = quint64(size);
    const QTemporaryDir folder(u"bench_growth-XXXXXX"_qs); // that for temporary files may be memory
    const PDeviceFrame frame = makeSmallFrame();
    const double before = UsedMemory::heapKib();
    POmeStackWriter writer(
        {folder.filePath(u"run.ome.tif"_qs), {}, {}, frames, std::nullopt, std::nullopt});
    double memory = 0;
    const double total = Stopwatch::processMs([&] {
        for (quint64 number = 1; number <= frames; ++number)
            checkWritten(writer.write(frame, number));
        memory = UsedMemory::heapKib() - before;
        checkWritten(writer.finish({}));
    });
    return {total * 1e3 / size, memory};
}

} // namespace

void Growth::addRecordings() {
    GrowthCurve::add({"recordings", "OME-TIFF of 16 x 16 pixels", "frames",
                      "microseconds of processor time a frame", "KiB of the heap at the end"},
                     {100, 1000, 10000, 100000, 1000000}, measureRecording);
}
