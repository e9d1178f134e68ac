// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTLog.h>
#include <PCdPlugins/PTDevice/PTPixelSwap.h>

#include <PCd/frame/PCdDipUtils.h>

#include <PCore/PFpsCounter.h>

#include <PDip/PPixelOperations.h>
#include <PDip/PRaster.h>

#include <QDebug>
#include <QMutexLocker>

#include <atomic>
#include <exception>
#include <optional>
#include <utility>

namespace {

constexpr int mostEvents = 6;
constexpr int mostImages = 4;
constexpr unsigned long idleWaitMs = 5;
constexpr int pullBits = 32;
constexpr auto runText = "virtual void PTStreamThread::run()";

/// Waits, and marks the mutex as free meanwhile for the thread sanitizer, which sees every use of a
/// QMutex but those inside Qt's own library. Without the sanitizer these do nothing.
void waitFor(QWaitCondition& condition, QMutex& mutex, unsigned long milliseconds) {
    QtTsan::mutexPreUnlock(&mutex, 0u);
    QtTsan::mutexPostUnlock(&mutex, 0u);
    condition.wait(&mutex, milliseconds);
    QtTsan::mutexPreLock(&mutex, 0u);
    QtTsan::mutexPostLock(&mutex, 0u, 0);
}

/// True for the first caller in the process, false for all later ones.
bool isFirst(std::atomic<bool>& happened) {
    return !happened.exchange(true);
}

/// The image for pulling a frame of the size that the SDK reported; nothing, with the frame counted
/// as dropped, if it cannot be created.
std::optional<PImage> imageFor(const ToupcamFrameInfoV2& info, PTDevice* device) {
    const PImageHeader header(long(info.width), long(info.height), PDIP::ColorFormat::BgrX);
    if (!header.isValid()) {
        ptLog(runText, __FILE__, __LINE__, PLogLevel::Warning)
            << "Frame dropped, the frame has no valid size:" << info.width << "x" << info.height;
        device->reportDroppedFrames(PFrameOutcome::BadSize);
        return std::nullopt;
    }
    PImage image;
    if (!image.create(header)) {
        device->reportDroppedFrames(PFrameOutcome::NoMemory);
        return std::nullopt;
    }
    return image;
}

/// True, with the frame logged and counted as dropped, if the second pull returned another frame
/// than the one that the image was created for: the camera may have changed its size in between. An
/// SDK may leave the record of the second pull empty; then its size is unknown.
bool droppedForItsSize(const PImage& image, const ToupcamFrameInfoV2& info, PTDevice* device) {
    if (info.width == 0 || info.height == 0)
        return false;
    if (image.width() == long(info.width) && image.height() == long(info.height))
        return false;
    ptLog(runText, __FILE__, __LINE__, PLogLevel::Warning)
        << "Frame dropped, pulled as" << info.width << "x" << info.height << "but announced as"
        << int(image.width()) << "x" << int(image.height());
    device->reportDroppedFrames(PFrameOutcome::BadSize);
    return true;
}

/// Exchanges the first and the third byte of every pixel of an image in the host's 32-bit format.
void swapRedAndBlue(PImage& image) {
    if (image.format() != PDIP::ColorFormat::Xrgb || image.channelType() != PDIP::Channel::UInt8)
        return;
    using Pixel = PDIP::PixelXRGB<unsigned char>;
    const PDIP::RasterT<Pixel> raster(image, PDIP::AccessMode::ReadWrite);
    Pixel& first = *raster.begin();
    // In one piece: rows of 4-byte pixels have no padding between them.
    PTPixelSwap::fastest()(&first.first,
                           std::size_t(raster.width()) * std::size_t(raster.height()));
}

} // namespace

/// Detects frames that the camera numbered but that could not be pulled, because they were replaced
/// in the SDK or their event was dropped here.
class PTStreamThread::SequenceWatch {
public:
    /// The number of missing frames between the last one and this one.
    unsigned missingBefore(const ToupcamFrameInfoV2& info) {
        if ((info.flag & TOUPCAM_FRAMEINFO_FLAG_SEQ) == 0)
            return 0;
        const unsigned ahead = m_last ? info.seq - *m_last : 1;
        m_last = info.seq;
        // A restarted stream counts from the beginning, which is not a loss, though the number
        // looks far ahead.
        return ahead == 0 || ahead > mostMissing ? 0 : ahead - 1;
    }

private:
    static constexpr unsigned mostMissing = 1u << 30;
    std::optional<unsigned> m_last;
};

PTStreamThread::PTStreamThread(PTDevice* owner, HToupCam camera)
    : device(owner)
    , handle(camera) {
    setObjectName(u"PTStreamThread"_qs);
}

PTStreamThread::~PTStreamThread() {
    const QMutexLocker locker(&lock);
    images.clear();
}

PStatus PTStreamThread::onStart() {
    return PStatus::Ok;
}

PStatus PTStreamThread::onStop() {
    // The events are kept: a restarted loop continues where this one ended.
    const QMutexLocker locker(&lock);
    images.clear();
    return PStatus::Ok;
}

void PTStreamThread::pushEvent(unsigned int code) {
    const QMutexLocker locker(&lock);
    // All are dropped, not only the oldest: a worker so far behind should start over.
    if (events.size() >= mostEvents)
        events.clear();
    events.append(code);
    wake.wakeAll();
}

void PTStreamThread::pushData(const PImage& image) {
    const QMutexLocker locker(&lock);
    if (images.size() >= mostImages) {
        qDebug() << "Clear data:" << images.size();
        images.clear();
    }
    images.append(image);
    wake.wakeAll();
}

void PTStreamThread::run() {
    setPriority(QThread::HighPriority);
    // Created by the first worker of the process, destroyed with the library.
    [[maybe_unused]] static PFpsCounter frameRate(nullptr);
    PT_LOG_IN(runText) << "PTStreamThread run loop entered";
    SequenceWatch sequence;
    while (isThreadRunned()) {
        unsigned int code = 0;
        if (!takeEvent(&code))
            continue;
        try {
            handleEvent(code, sequence);
        } catch (const std::exception& error) {
            // Out of memory: only this frame is lost, the thread continues.
            ptLog(runText, __FILE__, __LINE__, PLogLevel::Error) << "Exception:" << error.what();
            device->reportDroppedFrames(PFrameOutcome::NoMemory);
        }
    }
}

bool PTStreamThread::takeEvent(unsigned int* code) {
    const QMutexLocker locker(&lock);
    // Short, so that a stop is noticed soon.
    if (events.isEmpty())
        waitFor(wake, lock, idleWaitMs);
    if (events.isEmpty())
        return false;
    *code = events.takeFirst();
    return true;
}

void PTStreamThread::handleEvent(unsigned int code, SequenceWatch& sequence) {
    static std::atomic<bool> firstEventDequeued{false};
    if (isFirst(firstEventDequeued))
        PT_LOG_IN(runText) << "PTStreamThread first event dequeued, code:" << code;
    if (code == TOUPCAM_EVENT_IMAGE)
        pullLive(sequence);
    else if (code == TOUPCAM_EVENT_STILLIMAGE)
        pullStill();
}

void PTStreamThread::pullLive(SequenceWatch& sequence) {
    ToupcamFrameInfoV2 info{};
    int result = Toupcam_PullImageV2(handle, nullptr, pullBits, &info);
    if (!checkError(result)) {
        PT_LOG_IN(runText) << "Toupcam_PullImageV2 (info) failed, code:" << result;
        return;
    }
    if (const unsigned missing = sequence.missingBefore(info))
        device->reportDroppedFrames(PFrameOutcome::LostInCamera, missing);
    std::optional<PImage> image = imageFor(info, device);
    if (!image)
        return;
    info = {};
    result = Toupcam_PullImageV2(handle, image->rawData(PDIP::AccessMode::Write).data(), pullBits,
                                 &info);
    static std::atomic<bool> firstLiveFrame{false};
    if (checkError(result) && isFirst(firstLiveFrame))
        PT_LOG_IN(runText) << "First live frame pulled:" << unsigned(image->width()) << "x"
                           << unsigned(image->height());
    PDIP::setXToXRGB(&*image);
    qDebug() << "pull image:" << *image;
    swapRedAndBlue(*image);
    if (!checkError(result))
        device->reportDroppedFrames(PFrameOutcome::LostInCamera);
    else if (!droppedForItsSize(*image, info, device))
        device->processFrameImage(*image);
}

void PTStreamThread::pullStill() {
    PT_LOG_IN(runText) << "still image event";
    ToupcamFrameInfoV2 info{};
    int result = Toupcam_PullStillImageV2(handle, nullptr, pullBits, &info);
    if (!checkError(result)) {
        PT_LOG_IN(runText) << "Failed to pull still image [1]:" << result;
        return;
    }
    std::optional<PImage> image = imageFor(info, device);
    if (!image)
        return;
    info = {};
    result = Toupcam_PullStillImageV2(handle, image->rawData(PDIP::AccessMode::Write).data(),
                                      pullBits, &info);
    if (!checkError(result)) {
        PT_LOG_IN(runText) << "Failed to pull still image [2]:" << result;
        device->reportDroppedFrames(PFrameOutcome::LostInCamera);
        return;
    }
    PDIP::setXToXRGB(&*image);
    swapRedAndBlue(*image);
    if (!droppedForItsSize(*image, info, device))
        device->processSnapshot(PCdDipUtils::imageAsDeviceFrame(*image));
}

#include "moc_PTStreamThread.cpp"
