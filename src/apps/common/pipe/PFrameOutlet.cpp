// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PFrameOutlet.h>

#include <algorithm>
#include <utility>

namespace {

QString toSize(const PImageHeader& header) {
    return u"%1x%2"_qs.arg(QString::number(header.width()), QString::number(header.height()));
}

PFirstRate::TimePoint toArrival(const PDeviceFrame& frame) {
    return frame.stamp ? frame.stamp->arrived : std::chrono::steady_clock::now();
}

/// Of a frame, in bytes: so no more than the largest number wait.
std::size_t leastCost(std::size_t memory) {
    return std::max<std::size_t>(memory / PFrameOutlet::mostWaiting, 1);
}

} // namespace

PFrameOutlet::PFrameOutlet(std::unique_ptr<PFrameCoding> coding,
                           std::unique_ptr<PStreamTarget> target, std::optional<quint64> frames,
                           std::size_t memory)
    : m_coding(std::move(coding))
    , m_target(std::move(target))
    , m_frames(frames)
    , m_memory(memory)
    // One thread: the reader gets the frames in their order.
    , m_queue([this](const PDeviceFrame& frame, quint64 number) { return write(frame, number); }, 1,
              std::make_shared<PWorkBudget>(memory), leastCost(memory)) {
}

PFrameOutlet::~PFrameOutlet() {
    endWithin(std::chrono::milliseconds(0));
    m_queue.waitUntilIdle();
    close();
}

bool PFrameOutlet::takeFrame(const PDeviceFrame& frame, Kind kind) {
    if (kind != Kind::Live)
        return true;
    // Under one lock: otherwise a frame could be counted twice, or be taken after the end.
    const std::lock_guard lock(m_mutex);
    ++m_tally.arrived;
    const PFrameWriteQueue::State queue = m_queue.state();
    const quint64 taken = queue.written + queue.waiting + queue.failed;
    if (m_isEnding || !queue.error.isEmpty() || (m_frames && taken >= *m_frames)) {
        ++m_tally.afterEnd;
        return true;
    }
    m_rate.add(toArrival(frame));
    m_rateChanged.notify_all();
    if (!m_queue.push(frame)) {
        // A write may have failed since the look at the queue.
        ++(m_queue.state().error.isEmpty() ? m_tally.dropped : m_tally.afterEnd);
        return true;
    }
    if (m_frames && taken + 1 >= *m_frames)
        m_isEnding = true;
    return true;
}

void PFrameOutlet::end() {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    m_rateChanged.notify_all();
}

void PFrameOutlet::endWithin(std::chrono::milliseconds time) {
    m_target->giveUpAfter(time);
    end();
}

PStatus PFrameOutlet::close() {
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_isClosed, true))
            return PStatus::Ok;
        m_wasReaderGone = m_target->isReaderGone();
    }
    const PStatus closed = m_target->close();
    return closed.isOk() ? closed
                         : PStatus::failure(
                               u"cannot complete %1: %2"_qs.arg(m_target->name(), closed.reason()));
}

/// On the writer's thread. Returns why nothing more is to be written after this frame.
PStatus PFrameOutlet::write(const PDeviceFrame& frame, quint64 number) {
    const PStatus written = writeFrame(frame.image, number);
    if (written.isOk())
        m_target->endFrame();
    return written.isOk() ? written
                          : PStatus::failure(u"cannot write frame %1 to %2: %3"_qs.arg(
                                QString::number(number), m_target->name(), written.reason()));
}

PStatus PFrameOutlet::writeFrame(const PImage& image, quint64 number) {
    PStatus status = number == 1 ? begin(image.header()) : PStatus(PStatus::Ok);
    if (status.isOk() && image.header() != m_geometry) {
        return PStatus::failure(
            u"it has %1 pixels, and the first one %2: expected frames of one size and format"_qs
                .arg(toSize(image.header()), toSize(m_geometry)));
    }
    const QByteArray mark = m_coding->frameMark();
    if (status.isOk())
        status = m_target->write(reinterpret_cast<const unsigned char*>(mark.constData()),
                                 std::size_t(mark.size()));
    if (!status.isOk())
        return status;
    const PByteView bytes = m_coding->encode(image);
    return m_target->write(bytes.data, bytes.size);
}

/// Writes what precedes all frames.
PStatus PFrameOutlet::begin(const PImageHeader& first) {
    m_geometry = first;
    const QByteArray header = m_coding->makeHeader(
        first, m_coding->needsRate() ? waitForRate() : std::optional<double>());
    return m_target->write(reinterpret_cast<const unsigned char*>(header.constData()),
                           std::size_t(header.size()));
}

/// Frames arrive meanwhile, and none is dropped for the rate.
std::optional<double> PFrameOutlet::waitForRate() {
    std::unique_lock lock(m_mutex);
    m_rateChanged.wait(lock, [this] {
        return m_isEnding || m_rate.isKnown() || m_tally.dropped > 0 || !hasRoomForAnother();
    });
    return m_rate.rate();
}

/// Whether one more frame of the first one's size could wait, while none is written. A rate needs
/// two, so there is always room for the second one to try. Called under the lock.
bool PFrameOutlet::hasRoomForAnother() const {
    const std::size_t room = m_memory / std::max(m_geometry.dataSize(), leastCost(m_memory));
    return m_queue.state().waiting < std::max<std::size_t>(room, 2);
}

PFrameOutlet::Progress PFrameOutlet::progress() const {
    const std::lock_guard lock(m_mutex);
    const PFrameWriteQueue::State queue = m_queue.state();
    const PStreamTarget::End end = m_target->end();
    Progress progress;
    progress.tally = m_tally;
    progress.tally.written = queue.written;
    progress.tally.waiting = queue.waiting;
    progress.tally.unwritten = queue.failed;
    progress.bytes = m_target->bytes();
    // One that has all its frames may go.
    progress.isReaderGone = (end == PStreamTarget::End::ReaderClosed || isReaderGone()) &&
                            !(m_frames && queue.written >= *m_frames);
    // A reader that has enough, or an end that could not wait for it, is no failure.
    if (end == PStreamTarget::End::None || end == PStreamTarget::End::Failed)
        progress.error = queue.error;
    progress.isOver = m_isEnding || progress.isReaderGone || !queue.error.isEmpty();
    return progress;
}

/// Called under the lock.
bool PFrameOutlet::isReaderGone() const {
    return m_isClosed ? m_wasReaderGone : m_target->isReaderGone();
}
