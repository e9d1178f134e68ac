// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameCounters.h>
#include <PCd/frame/PFrameHandoff.h>
#include <PCd/frame/PFrameSink.h>

#include <PCore/PExport.h>

#include <QObject>

#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>

/// The pipeline of a device's frames: from the thread that delivers them, through the frame sinks,
/// to the device's thread. Every frame that enters is counted, and has exactly one outcome.
class PCD_TEST_EXPORT PFramePipeline {
public:
    using Deliver = std::function<void(const PFrameHandoff::Entry&)>;

    /// `deliver` is called on the thread of `device`, which must outlive this.
    PFramePipeline(QObject* device, Deliver deliver, std::size_t byteLimit);
    ~PFramePipeline();

    /// Puts a live frame, or a snapshot, into the pipeline. Any thread; never waits for the
    /// device's thread.
    void sendLive(const PImage& image) noexcept;
    void sendSnapshot(PDeviceFrame frame) noexcept;

    /// See the functions of PDevice with the same or similar names. Any thread.
    void addSink(std::shared_ptr<PFrameSink> sink);
    void removeSink(const std::shared_ptr<PFrameSink>& sink);
    PDeviceFrame newestFrame() const;
    void setByteLimit(std::size_t bytes) { m_handoff.setByteLimit(bytes); }

    /// Lets this number of live frames in from now on and counts the others as not requested;
    /// without a number, lets all in. Any thread.
    void limitLive(std::optional<quint64> count);

    /// The settings with which later frames are stamped.
    void setSettings(std::shared_ptr<PDeviceSettings> settings);
    /// Calls `change` with them, at once; frames stamped before keep theirs as they were. It must
    /// not call the pipeline.
    template <typename Change>
    void changeSettings(const Change& change) {
        const std::lock_guard lock(m_mutex);
        if (m_areSettingsShared)
            m_settings = std::make_shared<PDeviceSettings>(*m_settings);
        m_areSettingsShared = false;
        change(*m_settings);
    }

    PFrameCounters& counters() { return m_counters; }
    const PFrameCounters& counters() const { return m_counters; }

private:
    void send(PFrameHandoff::Entry entry) noexcept;
    bool claimLive();
    bool offerToSinks(const PFrameHandoff::Entry& entry) noexcept;
    bool queue(const PFrameHandoff::Entry& entry) noexcept;
    void settle(PFrameHandoff::Entry& entry, PFrameOutcome outcome);
    PDeviceFrame stamped(const PImage& image, PFrameSink::Kind kind);
    void wake() noexcept;
    void drain();
    /// False if a listener deleted the device, and this with it.
    bool deliverOne(PFrameHandoff::Entry entry);

    class Waker;

    QObject* m_device;
    std::unique_ptr<QObject> m_waker;
    Deliver m_deliver;
    PFrameCounters m_counters;
    PFrameHandoff m_handoff;

    mutable std::mutex m_mutex; // stamps are made on frame threads, read and configured elsewhere
    quint64 m_lastLive = 0;     ///< number of a frame
    quint64 m_lastStill = 0;    ///< number of a frame
    std::optional<quint64> m_liveLeft;
    std::shared_ptr<PDeviceSettings> m_settings = std::make_shared<PDeviceSettings>();
    bool m_areSettingsShared = false; ///< a frame has been stamped with them
    PDeviceFrame m_newest;

    // Held shared while sinks run, so that removing one waits until it is not running.
    std::shared_mutex m_sinksMutex;
    std::list<std::shared_ptr<PFrameSink>> m_sinks;
};
