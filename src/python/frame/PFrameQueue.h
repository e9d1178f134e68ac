// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameSink.h>

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

/// Frames on their way from a camera's thread to a slower reader: bounded, and never waiting. A
/// frame that finds it full is counted and refused. Independent of Python, so that the camera's
/// thread never needs the interpreter's lock. Any thread.
class PFrameQueue : public PFrameSink {
public:
    /// Takes frames of one kind: at most `capacity` wait at a time, and after `wanted` it takes no
    /// more.
    PFrameQueue(Kind kind, std::size_t capacity, std::optional<quint64> wanted);
    ~PFrameQueue() override;

    /// Ignores frames of the other kind and those after the last wanted one; false if it is full.
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;

    /// The oldest frame, or nothing.
    std::optional<PDeviceFrame> take();
    /// Ignores all later frames and releases those that wait.
    void close();

    /// The counts of the frames so far.
    struct Counts {
        /// Frames that were taken, or wait.
        quint64 accepted = 0;
        /// Frames that arrived while the queue was full: the loop took them too slowly.
        quint64 dropped = 0;
        /// Frames that wait in the queue now.
        std::size_t waiting = 0;
    };
    /// A consistent copy of the counts.
    Counts counts() const;
    /// A file that can be read while frames wait, for event loops; the queue closes it. Negative if
    /// the system has none left.
    int descriptor() const { return m_descriptor; }

private:
    void signalFrame() const;
    void clearSignal() const;

    const Kind m_kind;
    const std::size_t m_capacity;
    const std::optional<quint64> m_wanted;
    const int m_descriptor;

    // Guards the three below: the camera's thread puts frames in, the reader's takes them out.
    mutable std::mutex m_mutex;
    std::deque<PDeviceFrame> m_frames;
    Counts m_counts;
    bool m_isClosed = false;
};
