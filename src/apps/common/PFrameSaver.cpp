// SPDX-License-Identifier: MIT
#include <apps/common/PFrameSaver.h>

#include <exception>
#include <utility>

namespace {

constexpr int writerCount = 2;

} // namespace

PFrameSaver::PFrameSaver(PNumberedFiles files, SaveFrame saveFrame, std::size_t byteLimit)
    : m_files(std::move(files))
    , m_saveFrame(std::move(saveFrame))
    , m_byteLimit(byteLimit) {
    for (int i = 0; i < writerCount; ++i)
        m_writers.emplace_back([this] { saveFrames(); });
}

PFrameSaver::~PFrameSaver() {
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_work.notify_all();
    for (std::thread& writer : m_writers)
        writer.join();
}

bool PFrameSaver::takeFrame(const PDeviceFrame& frame, Kind kind) {
    if (kind != Kind::Live)
        return true;
    const std::lock_guard lock(m_mutex);
    const std::size_t bytes = frame.image.dataSize();
    const bool full = m_bytes > 0 && m_bytes + bytes > m_byteLimit;
    if (full || !m_state.error.isEmpty()) {
        ++m_state.unsaved;
        return false;
    }
    m_jobs.push_back({++m_lastNumber, frame});
    m_bytes += bytes;
    ++m_state.waiting;
    m_work.notify_one();
    return true;
}

bool PFrameSaver::waitUntilIdle(std::chrono::milliseconds atMost) {
    std::unique_lock lock(m_mutex);
    return m_idle.wait_for(lock, atMost, [this] { return m_state.waiting == 0; });
}

PFrameSaver::State PFrameSaver::state() const {
    const std::lock_guard lock(m_mutex);
    return m_state;
}

/// The body of a writer thread.
void PFrameSaver::saveFrames() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_work.wait(lock, [this] { return m_closing || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        // The camera's thread must not wait for the disk: it needs the lock to hand a frame in.
        lock.unlock();
        const QString error = trySave(job);
        lock.lock();
        finish(job, error);
    }
}

/// An empty text, or why the frame could not be saved.
QString PFrameSaver::trySave(const Job& job) const {
    const QString path = m_files.path(job.number);
    try {
        return m_saveFrame(path, job.frame).reason();
    } catch (const std::exception& error) {
        return u"cannot save \"%1\": %2"_qs.arg(path, QString::fromLocal8Bit(error.what()));
    }
}

/// Books a frame that was tried. Locked.
void PFrameSaver::finish(const Job& job, const QString& error) {
    m_bytes -= job.frame.image.dataSize();
    --m_state.waiting;
    ++(error.isEmpty() ? m_state.saved : m_state.unsaved);
    if (!error.isEmpty() && m_state.error.isEmpty())
        giveUp(error);
    if (m_state.waiting == 0)
        m_idle.notify_all();
}

/// The run is to end: what waits would only leave a hole in the series. Locked.
void PFrameSaver::giveUp(const QString& error) {
    m_state.error = error;
    for (const Job& job : m_jobs)
        m_bytes -= job.frame.image.dataSize();
    m_state.waiting -= m_jobs.size();
    m_state.unsaved += m_jobs.size();
    m_jobs.clear();
}
