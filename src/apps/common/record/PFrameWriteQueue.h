// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

#include <PCd/frame/PDeviceFrame.h>

#include <PCore/PStatus.h>
#include <PCore/work/PWorkQueue.h>

/// Writes frames from a camera's thread to files on its own threads: a work queue, bounded in bytes
/// of pixels, that counts frames and stops at the first one that cannot be written. Any thread.
class PFrameWriteQueue {
    Q_DECLARE_TR_FUNCTIONS(PFrameWriteQueue)

public:
    /// Writes one frame and returns the result; the first frame has the number 1. Called on all
    /// writer threads at once; frames are begun in order.
    using Write = std::function<PStatus(const PDeviceFrame& frame, quint64 number)>;

    /// The destructor writes what still waits, then returns. A frame costs as much of the memory as
    /// its pixels have bytes, but at least `leastCost`, which limits the number of frames.
    PFrameWriteQueue(Write write, int writers, std::shared_ptr<PWorkBudget> memory,
                     std::size_t leastCost = 0);

    /// Takes a frame, never waiting for the disk. False if too much is waiting, or an earlier frame
    /// could not be written; if nothing waits in this queue, a frame of any size is taken.
    bool push(const PDeviceFrame& frame);

    /// Waits until nothing is left to write, or until the timeout. True if nothing is.
    bool waitUntilIdle(std::optional<std::chrono::milliseconds> timeout = std::nullopt) {
        return m_work.waitUntilIdle(timeout);
    }

    /// The counts of the frames pushed so far.
    struct State {
        quint64 written = 0;
        quint64 waiting = 0; ///< or being written
        quint64 failed = 0;  ///< could not be written, or waited when another could not
        quint64 refused = 0; ///< not taken
        QString error;       ///< why the first one failed; nothing is written after it
    };
    /// A consistent copy of the counts.
    State state() const;

private:
    PStatus tryWrite(const PDeviceFrame& frame, quint64 number) const;
    void count(const PStatus& result);
    void giveUp(const QString& error);

    const Write m_write;
    const std::size_t m_leastCost;

    mutable std::mutex m_mutex; // guards the two below, which the threads that push and write use
    quint64 m_lastNumber = 0;
    State m_state;

    PWorkQueue m_work; // last: its threads use the rest until they are joined. Locked after m_mutex
};
