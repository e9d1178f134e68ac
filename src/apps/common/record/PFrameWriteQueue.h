// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PWriteMemory.h>

#include <QCoreApplication>

#include <PCd/frame/PDeviceFrame.h>

#include <PCore/PStatus.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// Frames on their way from a camera's thread to files, which threads of its own write. What waits
/// is bounded in bytes, together with the other queues of the same PWriteMemory. Any thread.
class PFrameWriteQueue {
    Q_DECLARE_TR_FUNCTIONS(PFrameWriteQueue)

public:
    /// What may wait on this machine: byteLimitFor() its memory.
    static std::size_t defaultByteLimit();
    /// A quarter of so many bytes of memory, at least 64 MiB and at most 2 GiB.
    static std::size_t byteLimitFor(std::uint64_t memory);

    /// Writes one frame and says how that went; the first frame has the number 1. Called on as many
    /// threads at once as there are writers; frames are begun in their order.
    using Write = std::function<PStatus(const PDeviceFrame& frame, quint64 number)>;

    PFrameWriteQueue(Write write, int writers, std::shared_ptr<PWriteMemory> memory);
    /// Writes what still waits, then returns.
    ~PFrameWriteQueue();

    /// Takes a frame, never waiting for the disk. False if too much waits already, or a frame could
    /// not be written before; where nothing waits in this queue, a frame is taken in any case.
    bool push(const PDeviceFrame& frame);

    /// Waits until nothing is left to write, at most this long. True if nothing is.
    bool waitUntilIdle(std::chrono::milliseconds atMost);

    /// What has become of the frames pushed so far.
    struct State {
        quint64 written = 0;
        quint64 waiting = 0; ///< or being written
        quint64 failed = 0;  ///< could not be written, or waited when another could not
        quint64 refused = 0; ///< not taken
        QString error;       ///< why the first one failed; nothing is written after it
    };
    State state() const;

private:
    struct Job {
        quint64 number = 0;
        PDeviceFrame frame;
    };

    void writeFrames();
    QString tryWrite(const Job& job) const;
    void finish(const Job& job, const QString& error);
    void giveUp(const QString& error);
    void giveBack(const Job& job);

    const Write m_write;
    const std::shared_ptr<PWriteMemory> m_memory;

    mutable std::mutex m_mutex; // guards all below but m_writers
    std::condition_variable m_work;
    std::condition_variable m_idle;
    std::deque<Job> m_jobs;
    std::size_t m_bytes = 0; ///< waiting or being written
    quint64 m_lastNumber = 0;
    State m_state;
    bool m_closing = false;
    std::vector<std::thread> m_writers;
};
