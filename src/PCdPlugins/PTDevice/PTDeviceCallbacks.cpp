// SPDX-License-Identifier: MIT
// The callbacks through which the SDK calls the plugin.
#include <PCdPlugins/PTDevice/PTCallbackGuard.h>
#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTLog.h>
#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <PCd/frame/PCdDipUtils.h>

#include <optional>
#include <utility>

namespace {

constexpr auto cbDataText = "void cbData(const void *, const BITMAPINFOHEADER *, int, void *)";
constexpr auto cbEventText = "void cbEvent(unsigned int, void *)";
constexpr auto cbExposureText = "void cbExposure(void *)";

std::optional<PDIP::ColorFormat> toColorFormat(int bitCount) {
    switch (bitCount) {
    case 8:
        return PDIP::ColorFormat::Gray;
    case 24:
        return PDIP::ColorFormat::Bgr;
    default:
        return std::nullopt;
    }
}

/// Copies a pushed buffer into an image, or counts it as dropped.
std::optional<PImage> copyToImage(PTDevice* device, const void* data,
                                  const BITMAPINFOHEADER& header) {
    const std::optional<PDIP::ColorFormat> format = toColorFormat(header.biBitCount);
    if (!format) {
        device->reportDroppedFrames(PFrameOutcome::BadDepth);
        return std::nullopt;
    }
    // No memory is allocated before the header has been checked: it may be wrong.
    const PImageHeader geometry(header.biWidth, header.biHeight, *format);
    if (!geometry.isValid() || geometry.dataSize() != header.biSizeImage) {
        device->reportDroppedFrames(PFrameOutcome::BadSize);
        return std::nullopt;
    }
    PImage image;
    if (!image.set(static_cast<const unsigned char*>(data), geometry)) {
        device->reportDroppedFrames(PFrameOutcome::NoMemory);
        return std::nullopt;
    }
    return image;
}

/// What every image carries; made once, and shared by all of them. Never destroyed: the SDK may
/// still deliver while the program exits.
const QMap<QString, QVariant>& metaInformation(bool isSnapshot) {
    using Map = QMap<QString, QVariant>;
    static const Map& live = *new Map{{u"snapshot"_qs, false}};
    static const Map& still = *new Map{{u"snapshot"_qs, true}};
    return isSnapshot ? still : live;
}

void deliver(PTDevice* device, PImage image, bool isSnapshot) {
    image.setMetaInformation(metaInformation(isSnapshot));
    if (isSnapshot)
        device->processSnapshot(PCdDipUtils::imageAsDeviceFrame(image));
    else
        device->processFrameImage(image);
}

void takeBuffer(PTDevice* device, const void* data, const BITMAPINFOHEADER& header,
                bool isSnapshot) {
    if (std::optional<PImage> image = copyToImage(device, data, header))
        deliver(device, std::move(*image), isSnapshot);
}

void logFirstEvent(unsigned int code) {
    // Logged once per process, to show that events arrive; with two cameras possibly twice.
    static std::atomic<bool> logged{false};
    if (!logged.exchange(true)) {
        ptLog(cbEventText, __FILE__, __LINE__)
            << "ToupCam first SDK event received, code:" << u"0x%1"_qs.arg(code, 0, 16);
    }
}

const char* failureText(unsigned int code) {
    switch (code) {
    case TOUPCAM_EVENT_ERROR:
        return "ToupCam EVENT_ERROR (generic streaming error)";
    case TOUPCAM_EVENT_DISCONNECTED:
        return "ToupCam EVENT_DISCONNECTED";
    case TOUPCAM_EVENT_NOFRAMETIMEOUT:
        return "ToupCam EVENT_NOFRAMETIMEOUT (link too slow to deliver a frame at this resolution)";
    case TOUPCAM_EVENT_NOPACKETTIMEOUT:
        return "ToupCam EVENT_NOPACKETTIMEOUT (USB packet loss/bandwidth)";
    default:
        return nullptr;
    }
}

void takeEvent(PTDevice* device, unsigned int code) {
    logFirstEvent(code);
    if (const char* const failure = failureText(code))
        ptLog(cbEventText, __FILE__, __LINE__, PLogLevel::Warning) << failure;
    if (device == nullptr)
        return;
    if (code == TOUPCAM_EVENT_DISCONNECTED)
        device->handleSdkDisconnect();
    device->pullThread()->pushEvent(code);
}

} // namespace

void cbData(const void* data, const BITMAPINFOHEADER* header, int isSnapshot, void* ctx) {
    auto* const device = static_cast<PTDevice*>(ctx);
    if (device == nullptr)
        return;
    if (data == nullptr) {
        PTCallbackGuard::run(cbDataText, [&] { device->handleSdkDisconnect(); });
        return;
    }
    if (header == nullptr)
        return;
    // Only code that runs before the frame is passed on and counted can throw.
    if (!PTCallbackGuard::run(cbDataText,
                              [&] { takeBuffer(device, data, *header, isSnapshot != 0); }))
        device->reportDroppedFrames(PFrameOutcome::NoMemory);
}

void cbEvent(unsigned int code, void* ctx) {
    PTCallbackGuard::run(cbEventText, [&] { takeEvent(static_cast<PTDevice*>(ctx), code); });
}

void cbExposure(void* ctx) {
    const auto* const device = static_cast<PTDevice*>(ctx);
    if (device == nullptr)
        return;
    PTCallbackGuard::run(cbExposureText, [&] {
        PTCallbackGuard::updateLater(device,
                                     "autoexpottime"); // spelled like this in the catalogue too
        PTCallbackGuard::updateLater(device, "autoexpogain");
    });
}
