// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/hang/PFilesInProgress.h>
#include <apps/common/record/PFrameWriteQueue.h>
#include <apps/common/record/PFrameWriter.h>
#include <apps/common/record/PRecordSchedule.h>
#include <apps/common/record/PWriteMemory.h>

#include <PCd/frame/PFrameSink.h>

#include <QCoreApplication>

#include <memory>

/// Records the live frames of a camera into files: takes them on the camera's thread without ever
/// waiting, and writes them on its own threads. It stops taking frames at its planned end, when a
/// frame cannot be written, and when too much waits to be written; then end() completes the files.
/// Any thread.
class PFrameRecorder : public PFrameSink {
    Q_DECLARE_TR_FUNCTIONS(PFrameRecorder)

public:
    using Clock = std::chrono::steady_clock;

    /// `memory`: the budget for frames that wait to be written; recorders may share one.
    PFrameRecorder(std::unique_ptr<PFrameWriter> writer, const PRecordSchedule::Plan& plan,
                   std::shared_ptr<PWorkBudget> memory = PWriteMemory::makeBudget());
    /// Ends it if end() was not called, and waits until the files are complete.
    ~PFrameRecorder() override;

    /// Ignores snapshots. False for a frame that should be recorded but finds no room.
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;

    /// Ends the recording: takes no more frames, writes those that wait, then completes the files,
    /// with the ledger of the camera's frames in this time (PFrameLedger::since()) and with the
    /// reason if the recording did not end as planned (else empty). Returns at once. Only the first
    /// call has an effect.
    void end(const std::optional<PFrameLedger>& ledger, const QString& failure);
    /// Waits until the files are complete, or until the timeout. True if they are; false before
    /// end().
    bool waitUntilFinished(std::chrono::milliseconds timeout);

    /// The progress of a recording, all figures of the same moment.
    struct Progress {
        PRecordTally tally;
        std::optional<double> share; ///< of the planned end, from 0 to 1
        /// Until the last frame of the plan is due; see PRecordSchedule.
        std::optional<PRecordSchedule::Duration> timeLeft;
        bool isOver = false;     ///< no more frames are taken
        bool isFinished = false; ///< after end(): the files are complete
        QString error;           ///< why frames or files are missing, translated; empty: none
    };
    /// The progress at this time. Any thread.
    Progress progress(Clock::time_point now = Clock::now()) const;

private:
    void completeWithoutCamera();
    PStatus finish(const QString& failure);
    void noteFinished(const PStatus& result);
    QString tooSlow(const QString& words) const;
    QString error(const PFrameWriteQueue::State& queue) const;
    PRecordTally tally(const PFrameWriteQueue::State& queue) const;

    const std::unique_ptr<PFrameWriter> m_writer;
    const std::shared_ptr<PWorkBudget> m_memory;

    // Guards everything below but the queues: the camera's thread, the writers and the users of
    // progress() share it. The queues' own locks are taken after it.
    mutable std::mutex m_mutex;
    PRecordSchedule m_schedule;
    std::optional<PFrameLedger> m_ledger;
    QString m_finishError;
    quint64 m_missing = 0; ///< see PFrameWriter
    bool m_isDiskTooSlow = false;
    quint64 m_notDue = 0;
    quint64 m_afterEnd = 0;
    bool m_isEnding = false;
    bool m_isFinished = false;

    // Last, so that their threads are joined while the other members exist; the finisher, which
    // waits for the other queue, first.
    PFrameWriteQueue m_queue;
    PWorkQueue m_finisher;
    PFilesInProgress m_files; ///< last: it uses all others
};
