// SPDX-License-Identifier: MIT
#pragma once

#include <python/frame/PFrameQueue.h>
#include <python/frame/PPythonFrame.h>
#include <python/frame/PPythonTrigger.h>
#include <python/host/PPybind.h>

#include <PCd/frame/PFrameLedger.h>

#include <chrono>
#include <memory>
#include <optional>

class PPythonSession;

/// Frames of an open camera, one after the other: of a live stream, or of a triggered run. Closed
/// when all wanted frames were taken, by close(), or when nothing refers to it any more.
/// @internal The thread of PPythonHost, with the interpreter's lock; throws PPythonError.
class PPythonStream {
public:
    /// Which frames, and the longest time to wait for one.
    struct Plan {
        std::optional<quint64> frames; ///< none: until it is closed
        std::size_t queue = 8;         ///< frames that may wait
        std::optional<double> timeout; ///< seconds; none: by the exposure time
        std::optional<PPythonTrigger::Plan> trigger;
    };

    /// Starts a stream. "BusyError" if one is running.
    PPythonStream(std::shared_ptr<PPythonSession> session, const Plan& plan);
    /// Closes; on any thread.
    ~PPythonStream();
    PPythonStream(const PPythonStream&) = delete;
    PPythonStream& operator=(const PPythonStream&) = delete;

    /// The next frame, for which it waits; None after the last one. "TimeoutError" if none comes in
    /// time, "UnpluggedError" after the last frame of a camera that was unplugged.
    std::unique_ptr<PPythonFrame> next();
    /// The next frame without waiting: nothing if there is none yet.
    /// @internal Python gets a tuple: false and None for nothing, true and None after the last one.
    std::optional<std::unique_ptr<PPythonFrame>> poll();
    /// Stops the camera and releases the frames that wait; nothing the second time.
    void close();

    /// @internal Any thread; throws in a forked process, where the queue's lock may be held for
    /// ever.
    PFrameQueue::Counts counts() const;
    /// What happened to each frame that the camera has produced for this stream, by the keys of
    /// `pcdctl stream --json`. `failed_in_writer` counts those that are `dropped`.
    py::dict ledger() const;
    /// See PFrameQueue::descriptor().
    int descriptor() const { return m_queue->descriptor(); }
    /// True if it gives no more frames.
    bool isClosed() const { return m_isClosed; }

private:
    using Clock = std::chrono::steady_clock;

    bool isEnded() const;
    std::unique_ptr<PPythonFrame> takeFrame();
    std::chrono::milliseconds patience() const;
    void checkPatience() const;
    static void finish(PPythonSession& session, const std::shared_ptr<PFrameQueue>& queue,
                       PPythonTrigger* trigger);

    std::shared_ptr<PPythonSession> m_session;
    const Plan m_plan;
    std::shared_ptr<PFrameQueue> m_queue;
    std::unique_ptr<PPythonTrigger> m_trigger;
    PFrameLedger m_ledgerAtStart;
    std::optional<PFrameLedger> m_ledgerAtEnd; ///< of a closed one
    Clock::time_point m_lastFrame;
    quint64 m_taken = 0;
    bool m_isClosed = false;
};
