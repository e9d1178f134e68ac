// SPDX-License-Identifier: MIT
#include <python/frame/PFrameQueue.h>

#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

PFrameQueue::PFrameQueue(Kind kind, std::size_t capacity, std::optional<quint64> wanted)
    : m_kind(kind)
    , m_capacity(capacity)
    , m_wanted(wanted)
    , m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
}

PFrameQueue::~PFrameQueue() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool PFrameQueue::takeFrame(const PDeviceFrame& frame, Kind kind) {
    const std::lock_guard lock(m_mutex);
    const bool isComplete = m_wanted && m_counts.accepted >= *m_wanted;
    if (kind != m_kind || m_isClosed || isComplete)
        return true;
    if (m_frames.size() >= m_capacity) {
        ++m_counts.dropped;
        return false;
    }
    m_frames.push_back(frame);
    ++m_counts.accepted;
    if (m_frames.size() == 1)
        signalFrame();
    return true;
}

std::optional<PDeviceFrame> PFrameQueue::take() {
    const std::lock_guard lock(m_mutex);
    if (m_frames.empty())
        return std::nullopt;
    PDeviceFrame frame = std::move(m_frames.front());
    m_frames.pop_front();
    if (m_frames.empty())
        clearSignal();
    return frame;
}

void PFrameQueue::close() {
    std::deque<PDeviceFrame> released; // without the lock: memory may go back to the system
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    released.swap(m_frames);
    clearSignal();
}

PFrameQueue::Counts PFrameQueue::counts() const {
    const std::lock_guard lock(m_mutex);
    Counts counts = m_counts;
    counts.waiting = m_frames.size();
    return counts;
}

void PFrameQueue::signalFrame() const {
    if (m_descriptor >= 0)
        eventfd_write(m_descriptor, 1);
}

void PFrameQueue::clearSignal() const {
    eventfd_t count = 0;
    if (m_descriptor >= 0)
        eventfd_read(m_descriptor, &count);
}
