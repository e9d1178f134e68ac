// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/pipe/PFirstRate.h>
#include <apps/common/pipe/PFrameCoding.h>
#include <apps/common/pipe/POutletTally.h>
#include <apps/common/pipe/PStreamTarget.h>
#include <apps/common/record/PFrameWriteQueue.h>
#include <apps/common/record/PWriteMemory.h>

#include <PCd/frame/PFrameSink.h>

#include <memory>

/// Passes the live frames of a camera on to another program: takes them on the camera's thread
/// without ever waiting, and writes them on a thread of its own. A few frames wait for a reader
/// that pauses; those that arrive meanwhile are dropped and counted, and the others stay whole and
/// in order. Any thread.
class PFrameOutlet : public PFrameSink {
public:
    /// The number of frames that wait for the reader, or are being written; fewer if they would
    /// take more than the memory for frames that wait to be written (PWriteMemory).
    static constexpr std::size_t mostWaiting = 8;

    /// `target` is open; `frames`: takes this number, without one all until it is ended.
    PFrameOutlet(std::unique_ptr<PFrameCoding> coding, std::unique_ptr<PStreamTarget> target,
                 std::optional<quint64> frames = std::nullopt,
                 std::size_t memory = PWriteMemory::defaultLimit());
    /// Drops what the reader does not take at once, and closes the target.
    ~PFrameOutlet() override;

    /// Ignores snapshots. Always true: a frame that is dropped for the reader still reaches the
    /// camera's other users.
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;

    /// Takes no more frames; those that wait are still written. Returns at once.
    void end();
    /// Likewise, but what the reader of a pipe has not taken after this time is dropped.
    void endWithin(std::chrono::milliseconds time);
    /// Waits until nothing is left to write, or until the timeout. True if nothing is.
    bool waitUntilFinished(std::chrono::milliseconds timeout) {
        return m_queue.waitUntilIdle(timeout);
    }
    /// Closes the target, once nothing is left to write. Fails with the reason. The thread that
    /// made this.
    PStatus close();

    /// What has happened so far, all figures of the same moment.
    struct Progress {
        POutletTally tally;
        std::uint64_t bytes = 0;   ///< written
        bool isOver = false;       ///< no more frames are taken
        bool isReaderGone = false; ///< the reader has closed the pipe, which is no failure
        QString error;             ///< why frames could not be written; empty: none
    };
    /// The progress at this time.
    Progress progress() const;

private:
    PStatus write(const PDeviceFrame& frame, quint64 number);
    PStatus writeFrame(const PImage& image, quint64 number);
    PStatus begin(const PImageHeader& first);
    std::optional<double> waitForRate();
    bool hasRoomForAnother() const;
    bool isReaderGone() const;

    const std::unique_ptr<PFrameCoding> m_coding;
    const std::unique_ptr<PStreamTarget> m_target;
    const std::optional<quint64> m_frames;
    const std::size_t m_memory; ///< bytes of pixels that may wait
    PImageHeader m_geometry;    ///< of the first frame; the writer's thread only

    // Guards the five below: the camera's thread, the writer and the users of progress() share
    // them. The queue's own lock is taken after it; nothing waits for the reader under it.
    mutable std::mutex m_mutex;
    PFirstRate m_rate;
    POutletTally m_tally; ///< without what the queue counts
    bool m_isEnding = false;
    bool m_isClosed = false;
    bool m_wasReaderGone = false;          ///< when it was closed
    std::condition_variable m_rateChanged; ///< or the end has come

    PFrameWriteQueue m_queue; // last: its thread uses the rest until it is joined
};
