// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>

#include <PDip/PImage.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

/// A grey image of 4 x 4 pixels (16 bytes).
inline PImage smallImage() {
    PImage image;
    image.create(4, 4, PDIP::ColorFormat::Gray);
    return image;
}
constexpr std::size_t smallImageBytes = 16;

/// The stamp of an image that has come through a device; null otherwise.
inline std::shared_ptr<const PFrameStamp> findStamp(const PImage& image) {
    return std::dynamic_pointer_cast<const PFrameStamp>(image.attachment());
}

/// The stamp of a frame, or of an image that has passed through a device; throws if there is none,
/// which fails the test.
inline PFrameStamp stampIn(const PDeviceFrame& frame) {
    if (frame.stamp == nullptr)
        throw std::runtime_error("the frame has no stamp");
    return *frame.stamp;
}
inline PFrameStamp stampIn(const PImage& image) {
    const std::shared_ptr<const PFrameStamp> stamp = findStamp(image);
    if (stamp == nullptr)
        throw std::runtime_error("the image has no stamp");
    return *stamp;
}

/// The settings that a frame was taken with; throws if it has none, which fails the test.
inline PDeviceSettings settingsIn(const PDeviceFrame& frame) {
    const PFrameStamp stamp = stampIn(frame);
    if (stamp.settings == nullptr)
        throw std::runtime_error("the frame has no settings");
    return *stamp.settings;
}

inline void sendImages(PDevice& device, int count) {
    for (int i = 0; i < count; ++i)
        device.processFrameImage(smallImage());
}

/// Runs a function on a thread not created by Qt, as camera SDKs do, and waits for it.
inline void onForeignThread(std::function<void()> work) {
    std::thread(std::move(work)).join();
}

/// A thread that delivers frames without a pause, until it is stopped.
class FrameSource {
public:
    explicit FrameSource(PDevice& device)
        : m_device(device) {}
    ~FrameSource() { stop(); }

    void start() {
        m_thread = std::thread([this] {
            while (!m_stop) {
                sendImages(m_device, 1);
                ++m_delivered;
                std::this_thread::yield();
            }
        });
    }
    void stop() {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
    }
    quint64 delivered() const { return m_delivered; }

private:
    PDevice& m_device;
    std::atomic<bool> m_stop{false};
    std::atomic<quint64> m_delivered{0};
    std::thread m_thread;
};

/// Records what it takes; a test sets what it returns.
class RecordingSink : public PFrameSink {
public:
    enum class Answer { Takes, Refuses, Throws, ThrowsNoException };

    struct Taken {
        quint64 sequence;
        Kind kind;
        std::thread::id thread;
    };

    explicit RecordingSink(Answer how = Answer::Takes)
        : answer(how) {}

    bool takeFrame(const PDeviceFrame& frame, Kind kind) override {
        const std::lock_guard lock(m_mutex);
        const quint64 sequence = frame.stamp ? frame.stamp->sequence : 0; // no frame has it
        m_taken.push_back({sequence, kind, std::this_thread::get_id()});
        if (answer == Answer::Throws)
            throw std::runtime_error("disk full");
        if (answer == Answer::ThrowsNoException)
            throw 42; // NOLINT: not an exception class
        return answer == Answer::Takes;
    }
    std::vector<Taken> taken() const {
        const std::lock_guard lock(m_mutex);
        return m_taken;
    }

    const Answer answer;

private:
    mutable std::mutex m_mutex; // filled by the delivering thread, read by the test
    std::vector<Taken> m_taken;
};

/// The images and snapshots that listeners of a device receive.
class FrameListener {
public:
    explicit FrameListener(PDevice& device) {
        QObject::connect(&device, &PImageSource::imageChanged, &m_context,
                         [this](const PImage& image) {
                             images.push_back(image);
                             threads.push_back(std::this_thread::get_id());
                         });
        QObject::connect(&device, &PDevice::snapshotTaken, &m_context,
                         [this](const PDeviceFrame& frame) { snapshots.push_back(frame); });
    }

    /// Sequence numbers of the images, in the order of arrival.
    std::vector<quint64> sequences() const {
        std::vector<quint64> numbers;
        for (const PImage& image : images)
            numbers.push_back(stampIn(image).sequence);
        return numbers;
    }

    std::vector<PImage> images;
    std::vector<std::thread::id> threads;
    std::vector<PDeviceFrame> snapshots;

private:
    QObject m_context;
};
