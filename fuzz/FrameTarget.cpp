// SPDX-License-Identifier: MIT
// What the SDK pushes to the plugin's cbData(): a header with anything in it, and as many bytes of
// pixels as it says. The input is the header, then a byte that selects a live frame or a still.
#include <FuzzSupport.h>

#include <PCdPlugins/PTDevice/PTDevice.h>

#include <PCd/frame/PFrameSink.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {

/// Larger frames are left out: filling them would be all that a run does.
constexpr qint64 mostPixelBytes = 1 << 16;

class NewestFrame : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override {
        newest = frame;
        isStill = kind == Kind::Snapshot;
        ++count;
        return true;
    }
    PDeviceFrame newest;
    bool isStill = false;
    int count = 0;
};

struct Camera {
    Camera() {
        ToupcamDeviceV2 records[TOUPCAM_MAX] = {};
        Fuzz::require(Toupcam_EnumV2(records) > 0, "there is a simulated camera");
        device = PTDevice::create(records[0]);
        Fuzz::require(device != nullptr, "the camera opens");
        device->addFrameSink(sink);
    }
    PTDevice* device = nullptr;
    std::shared_ptr<NewestFrame> sink = std::make_shared<NewestFrame>();
};

/// The size in bytes of a frame with this header, computed here again; 0 if there is none.
qint64 neededBytes(const BITMAPINFOHEADER& header) {
    if (header.biWidth <= 0 || header.biHeight <= 0 ||
        (header.biBitCount != 8 && header.biBitCount != 24))
        return 0;
    const qint64 row = (qint64(header.biWidth) * (header.biBitCount / 8) + 3) / 4 * 4;
    qint64 bytes = 0;
    return __builtin_mul_overflow(row, qint64(header.biHeight), &bytes) ? 0 : bytes;
}

void requireTaken(const Camera& camera, const BITMAPINFOHEADER& header, bool isStill) {
    const PImage& image = camera.sink->newest.image;
    Fuzz::require(camera.sink->count == 1, "a good frame is delivered once");
    Fuzz::require(camera.sink->isStill == isStill, "a still is delivered as a still");
    Fuzz::require(image.header().width() == header.biWidth &&
                      image.header().height() == header.biHeight,
                  "the image has the header's size");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Camera& camera = *new Camera;
    BITMAPINFOHEADER header{};
    std::memcpy(&header, data, std::min(size, sizeof header));
    const bool isStill = size > sizeof header && data[sizeof header] % 2 != 0;
    const bool isGood = neededBytes(header) == qint64(header.biSizeImage) && header.biSizeImage > 0;
    if (isGood && header.biSizeImage > mostPixelBytes)
        return 0;
    camera.sink->count = 0;
    const quint64 producedBefore = camera.device->frameLedger().produced;
    // Of a bad frame no pixel may be read, so there is none.
    const std::vector<std::uint8_t> pixels(isGood ? header.biSizeImage : 0, 1);
    const std::uint8_t* const nothing = data + size;
    cbData(isGood ? pixels.data() : nothing, &header, isStill, camera.device);
    QCoreApplication::sendPostedEvents();
    const PFrameLedger ledger = camera.device->frameLedger();
    Fuzz::require(ledger.produced == producedBefore + 1, "every frame is counted once");
    Fuzz::require(ledger.isBalanced() && ledger.waiting == 0, "the ledger balances");
    Fuzz::require(isGood || camera.sink->count == 0, "a bad frame is not delivered");
    if (isGood)
        requireTaken(camera, header, isStill);
    return 0;
}
