// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameRecorder.h>

#include <utility>

namespace {

constexpr char tooSlowWords[] = QT_TRANSLATE_NOOP(
    "PFrameRecorder", "the disk is slower than the camera: %1 MB are waiting to be written");

PFrameRecorder::Clock::time_point arrivalTime(const PDeviceFrame& frame) {
    return frame.stamp ? frame.stamp->arrived : PFrameRecorder::Clock::now();
}

} // namespace

PFrameRecorder::PFrameRecorder(std::unique_ptr<PFrameWriter> writer,
                               const PRecordSchedule::Plan& plan,
                               std::shared_ptr<PWorkBudget> memory)
    : m_writer(std::move(writer))
    , m_memory(std::move(memory))
    , m_schedule(plan)
    , m_queue([this](const PDeviceFrame& frame,
                     quint64 number) { return m_writer->write(frame, number); },
              m_writer->threads(), m_memory)
    , m_finisher(1)
    , m_files([this] { completeWithoutCamera(); }) {
}

PFrameRecorder::~PFrameRecorder() {
    end(std::nullopt, QString());
}

bool PFrameRecorder::takeFrame(const PDeviceFrame& frame, Kind kind) {
    if (kind != Kind::Live)
        return true;
    // Under one lock: otherwise an end() now would lose a frame between schedule and queue. Nothing
    // waits for the disk under this lock.
    const std::lock_guard lock(m_mutex);
    const bool isOpen = !m_isEnding && !m_isDiskTooSlow && m_queue.state().error.isEmpty();
    const Clock::time_point arrived = arrivalTime(frame);
    if (!isOpen || m_schedule.isOver(arrived)) {
        ++m_afterEnd;
        return true;
    }
    if (!m_schedule.claim(arrived)) {
        ++m_notDue;
        return true;
    }
    if (m_queue.push(frame))
        return true;
    // One missing frame is enough: a recording must not have gaps.
    m_isDiskTooSlow = true;
    return false;
}

/// The failure of a disk that is too slow: `words` with the limit in megabytes.
QString PFrameRecorder::tooSlow(const QString& words) const {
    return words.arg(double(m_memory->limit()) / 1e6, 0, 'f', 1);
}

void PFrameRecorder::end(const std::optional<PFrameLedger>& ledger, const QString& failure) {
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_isEnding, true))
        return;
    m_ledger = ledger;
    // Not on this thread, which must not wait for the disk.
    m_finisher.push(
        1, [this, failure] { return finish(failure); },
        [this](const PStatus& result) { noteFinished(result); });
}

/// The main thread does not return from a call to the camera.
void PFrameRecorder::completeWithoutCamera() {
    end(std::nullopt, u"the program ended because a call to the camera did not return"_qs);
    m_finisher.waitUntilIdle();
}

/// Completes the files, on the finisher's thread.
PStatus PFrameRecorder::finish(const QString& failure) {
    m_queue.waitUntilIdle();
    const Progress atEnd = progress();
    PRecordEnd end{atEnd.tally, std::nullopt, atEnd.error.isEmpty() ? failure : atEnd.error};
    {
        const std::lock_guard lock(m_mutex);
        end.ledger = m_ledger;
        // Other users read the files too, so the reason in them is in English.
        if (m_queue.state().error.isEmpty() && m_isDiskTooSlow)
            end.failure = tooSlow(QString::fromLatin1(tooSlowWords));
    }
    return m_writer->finish(end); // without the lock: progress() must not wait for the disk
}

/// On the finisher's thread.
void PFrameRecorder::noteFinished(const PStatus& result) {
    const std::lock_guard lock(m_mutex);
    m_finishError = result.reason();
    m_missing = m_writer->missing();
    m_isFinished = true;
}

bool PFrameRecorder::waitUntilFinished(std::chrono::milliseconds timeout) {
    m_finisher.waitUntilIdle(timeout);
    return progress().isFinished;
}

PFrameRecorder::Progress PFrameRecorder::progress(Clock::time_point now) const {
    const std::lock_guard lock(m_mutex);
    const PFrameWriteQueue::State queue = m_queue.state();
    Progress progress;
    progress.tally = tally(queue);
    progress.share = m_schedule.share(now);
    progress.timeLeft = m_schedule.timeLeft(now);
    progress.error = error(queue);
    progress.isOver = m_isEnding || !progress.error.isEmpty() || m_schedule.isOver(now);
    progress.isFinished = m_isFinished;
    return progress;
}

/// Called under the lock. The first failure, in the user's language.
QString PFrameRecorder::error(const PFrameWriteQueue::State& queue) const {
    if (!queue.error.isEmpty())
        return queue.error;
    return m_isDiskTooSlow ? tooSlow(tr(tooSlowWords)) : m_finishError;
}

/// Called under the lock. Claimed frames are counted independently of their outcomes, so that a
/// frame lost in between would be noticed.
PRecordTally PFrameRecorder::tally(const PFrameWriteQueue::State& queue) const {
    PRecordTally tally;
    tally.wanted = m_schedule.frames().value_or(m_schedule.claimed());
    tally.written = queue.written - m_missing;
    tally.waiting = queue.waiting;
    tally.failed = queue.failed + m_missing;
    tally.refused = queue.refused;
    tally.notTaken = tally.wanted - m_schedule.claimed();
    tally.notDue = m_notDue;
    tally.afterEnd = m_afterEnd;
    return tally;
}
