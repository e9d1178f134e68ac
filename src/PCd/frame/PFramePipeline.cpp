// SPDX-License-Identifier: MIT
#include <PCd/frame/PFramePipeline.h>

#include <PLog/PLog.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <chrono>
#include <exception>
#include <utility>

namespace {

constexpr std::chrono::milliseconds deliveryTime(10);

void logFailure(const char* what, const char* reason) noexcept {
    try {
        PLog::logStream(u"PCd"_qs, QString::fromLatin1(Q_FUNC_INFO), QString::fromLatin1(__FILE__),
                        __LINE__, PLogLevel::Error)
            << what << reason;
    } catch (...) {
        // Nowhere left to report it; the ledger still counts the frame.
        return;
    }
}

} // namespace

// All that a sink has outside its header; here because the pipeline is what calls sinks.
PFrameSink::~PFrameSink() = default;

/// Belongs to the device's thread and empties the pipeline there when its event arrives.
class PFramePipeline::Waker : public QObject {
public:
    explicit Waker(PFramePipeline* pipeline)
        : m_pipeline(pipeline) {}

protected:
    /// Only one type of user event is posted to this object.
    void customEvent(QEvent*) override {
        m_pipeline->drain(); // may delete the pipeline, and this with it
    }

private:
    PFramePipeline* m_pipeline;
};

PFramePipeline::~PFramePipeline() = default;

PFramePipeline::PFramePipeline(QObject* device, Deliver deliver, std::size_t byteLimit)
    : m_device(device)
    , m_waker(std::make_unique<Waker>(this))
    , m_deliver(std::move(deliver))
    , m_handoff(byteLimit) {
}

void PFramePipeline::sendLive(const PImage& image) noexcept {
    if (image.isNull()) {
        m_counters.enterAndSettle(PFrameOutcome::BadSize);
        return;
    }
    if (!claimLive()) {
        m_counters.enterAndSettle(PFrameOutcome::NotRequested);
        return;
    }
    m_counters.enter();
    PFrameHandoff::Entry entry;
    // Released after the new frame has been handed on, which need not wait for that.
    PDeviceFrame previous;
    try {
        entry.frame = stamped(image, entry.kind);
        const std::lock_guard lock(m_mutex);
        previous = std::exchange(m_newest, entry.frame);
    } catch (const std::exception&) {
        m_counters.settle(PFrameOutcome::NoMemory);
        return;
    }
    send(std::move(entry));
}

void PFramePipeline::sendSnapshot(PDeviceFrame frame) noexcept {
    PFrameHandoff::Entry entry;
    entry.kind = PFrameSink::Kind::Snapshot;
    // A stamped frame was counted as a live one when it first came through here.
    entry.settled = frame.stamp != nullptr;
    if (!entry.settled)
        m_counters.enter();
    if (frame.image.isNull()) {
        settle(entry, PFrameOutcome::BadSize);
        return;
    }
    try {
        entry.frame = entry.settled ? std::move(frame) : stamped(frame.image, entry.kind);
    } catch (const std::exception&) {
        settle(entry, PFrameOutcome::NoMemory);
        return;
    }
    send(std::move(entry));
}

void PFramePipeline::send(PFrameHandoff::Entry entry) noexcept {
    if (!offerToSinks(entry))
        settle(entry, PFrameOutcome::FailedInWriter);
    if (queue(entry))
        wake();
    else
        settle(entry, PFrameOutcome::DroppedWaiting);
}

bool PFramePipeline::claimLive() {
    const std::lock_guard lock(m_mutex);
    if (!m_liveLeft)
        return true;
    if (*m_liveLeft == 0)
        return false;
    --*m_liveLeft;
    return true;
}

bool PFramePipeline::offerToSinks(const PFrameHandoff::Entry& entry) noexcept {
    const std::shared_lock lock(m_sinksMutex);
    bool taken = true;
    for (const std::shared_ptr<PFrameSink>& sink : m_sinks) {
        try {
            taken = sink->takeFrame(entry.frame, entry.kind) && taken;
        } catch (const std::exception& error) {
            logFailure("A frame sink failed:", error.what());
            taken = false;
        } catch (...) {
            logFailure("A frame sink failed:", "unknown exception");
            taken = false;
        }
    }
    return taken;
}

bool PFramePipeline::queue(const PFrameHandoff::Entry& entry) noexcept {
    try {
        return m_handoff.push(entry);
    } catch (const std::exception&) {
        return false;
    }
}

void PFramePipeline::settle(PFrameHandoff::Entry& entry, PFrameOutcome outcome) {
    if (!std::exchange(entry.settled, true))
        m_counters.settle(outcome);
}

PDeviceFrame PFramePipeline::stamped(const PImage& image, PFrameSink::Kind kind) {
    auto stamp = std::make_shared<PFrameStamp>();
    stamp->arrived = std::chrono::steady_clock::now();
    stamp->arrivedUtc = QDateTime::currentDateTimeUtc();
    stamp->still = kind == PFrameSink::Kind::Snapshot;
    {
        const std::lock_guard lock(m_mutex);
        stamp->sequence = ++(stamp->still ? m_lastStill : m_lastLive);
        stamp->settings = m_settings;
        m_areSettingsShared = true;
    }
    PDeviceFrame frame{image, stamp};
    frame.image.setAttachment(stamp);
    return frame;
}

void PFramePipeline::wake() noexcept {
    if (!m_handoff.claimWake())
        return;
    try {
        // The hop to the device's thread. One event serves all frames that arrive until it is
        // handled, so a stalled thread finds one pending event, not thousands; Qt discards it with
        // the device. A user event carries no data between the threads, only the request to be
        // called.
        QCoreApplication::postEvent(m_waker.get(), new QEvent(QEvent::User));
    } catch (const std::exception&) {
        m_handoff.wakeArrived(); // no memory for the event: the next frame tries again
    }
}

void PFramePipeline::drain() {
    // Only the frames queued now, and for a limited time: other events must be handled too, even if
    // frames arrive faster than the listeners handle them.
    const std::size_t waiting = m_handoff.wakeArrived();
    // The usual single frame is delivered without a look at the clock.
    const auto end = waiting > 1 ? std::chrono::steady_clock::now() + deliveryTime
                                 : std::chrono::steady_clock::time_point();
    for (std::size_t left = waiting; left > 0; --left) {
        std::optional<PFrameHandoff::Entry> entry = m_handoff.take();
        if (!entry || !deliverOne(std::move(*entry)))
            return;
        if (left > 1 && std::chrono::steady_clock::now() >= end) {
            wake();
            return;
        }
    }
}

bool PFramePipeline::deliverOne(PFrameHandoff::Entry entry) {
    const QPointer<QObject> device(m_device);
    PFrameOutcome outcome = PFrameOutcome::Delivered;
    try {
        m_deliver(entry);
    } catch (const std::exception& error) {
        // Beyond this point an exception would unwind the event loop.
        logFailure("A listener failed over a frame:", error.what());
        outcome = PFrameOutcome::Failed;
    } catch (...) {
        logFailure("A listener failed over a frame:", "unknown exception");
        outcome = PFrameOutcome::Failed;
    }
    if (!device) // a listener deleted the device, and this with it
        return false;
    if (entry.kind == PFrameSink::Kind::Snapshot && outcome == PFrameOutcome::Delivered)
        m_counters.countSnapshot();
    settle(entry, outcome);
    return true;
}

void PFramePipeline::addSink(std::shared_ptr<PFrameSink> sink) {
    const std::unique_lock lock(m_sinksMutex);
    m_sinks.push_back(std::move(sink));
}

void PFramePipeline::removeSink(const std::shared_ptr<PFrameSink>& sink) {
    const std::unique_lock lock(m_sinksMutex);
    m_sinks.remove(sink);
}

PDeviceFrame PFramePipeline::newestFrame() const {
    const std::lock_guard lock(m_mutex);
    return m_newest;
}

void PFramePipeline::limitLive(std::optional<quint64> count) {
    const std::lock_guard lock(m_mutex);
    m_liveLeft = count;
}

void PFramePipeline::setSettings(std::shared_ptr<PDeviceSettings> settings) {
    const std::lock_guard lock(m_mutex);
    m_settings = std::move(settings);
    m_areSettingsShared = false;
}
