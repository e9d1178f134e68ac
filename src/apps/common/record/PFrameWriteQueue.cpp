// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameWriteQueue.h>

#include <unistd.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t(1) << 20;

/// Bytes; 0 if the system does not report it.
std::uint64_t physicalMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? std::uint64_t(pages) * std::uint64_t(pageSize) : 0;
}

} // namespace

std::size_t PFrameWriteQueue::defaultByteLimit() {
    static const std::size_t limit = byteLimitFor(physicalMemory());
    return limit;
}

// The rest is for the camera's own buffers, the other programs, and what the system holds for the
// disk. More than 2 GiB would only put off the end on a disk that is too slow; with less than a few
// large frames a disk that pauses ends a recording.
std::size_t PFrameWriteQueue::byteLimitFor(std::uint64_t memory) {
    return std::size_t(std::clamp(memory / 4, 64 * mebibyte, 2048 * mebibyte));
}

PFrameWriteQueue::PFrameWriteQueue(Write write, int writers, std::shared_ptr<PWriteMemory> memory)
    : m_write(std::move(write))
    , m_memory(std::move(memory)) {
    for (int i = 0; i < writers; ++i)
        m_writers.emplace_back([this] { writeFrames(); });
}

PFrameWriteQueue::~PFrameWriteQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_work.notify_all();
    for (std::thread& writer : m_writers)
        writer.join();
}

bool PFrameWriteQueue::push(const PDeviceFrame& frame) {
    const std::lock_guard lock(m_mutex);
    const std::size_t bytes = frame.image.dataSize();
    if (!m_state.error.isEmpty() || !m_memory->take(bytes, m_bytes)) {
        ++m_state.refused;
        return false;
    }
    m_jobs.push_back({++m_lastNumber, frame});
    m_bytes += bytes;
    ++m_state.waiting;
    m_work.notify_one();
    return true;
}

bool PFrameWriteQueue::waitUntilIdle(std::chrono::milliseconds atMost) {
    std::unique_lock lock(m_mutex);
    return m_idle.wait_for(lock, atMost, [this] { return m_state.waiting == 0; });
}

PFrameWriteQueue::State PFrameWriteQueue::state() const {
    const std::lock_guard lock(m_mutex);
    return m_state;
}

/// The body of a writer thread.
void PFrameWriteQueue::writeFrames() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_work.wait(lock, [this] { return m_closing || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        // The camera's thread must not wait for the disk: it needs the lock to hand a frame in.
        lock.unlock();
        const QString error = tryWrite(job);
        lock.lock();
        finish(job, error);
    }
}

/// An empty text, or why the frame could not be written.
QString PFrameWriteQueue::tryWrite(const Job& job) const {
    try {
        return m_write(job.frame, job.number).reason();
    } catch (const std::exception& error) {
        return tr("cannot save frame %1: %2")
            .arg(job.number)
            .arg(QString::fromLocal8Bit(error.what()));
    }
}

/// Books a frame that was tried. Locked.
void PFrameWriteQueue::finish(const Job& job, const QString& error) {
    giveBack(job);
    --m_state.waiting;
    ++(error.isEmpty() ? m_state.written : m_state.failed);
    if (!error.isEmpty() && m_state.error.isEmpty())
        giveUp(error);
    if (m_state.waiting == 0)
        m_idle.notify_all();
}

/// The run is to end: what waits would only leave a hole in it. Locked.
void PFrameWriteQueue::giveUp(const QString& error) {
    m_state.error = error;
    for (const Job& job : m_jobs)
        giveBack(job);
    m_state.waiting -= m_jobs.size();
    m_state.failed += m_jobs.size();
    m_jobs.clear();
}

/// Locked.
void PFrameWriteQueue::giveBack(const Job& job) {
    const std::size_t bytes = job.frame.image.dataSize();
    m_bytes -= bytes;
    m_memory->giveBack(bytes);
}
