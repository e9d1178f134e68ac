// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PFileSequence.h>
#include <apps/common/record/PFrameWriteQueue.h>
#include <apps/common/record/PWriteMemory.h>

#include <PCd/frame/PFrameSink.h>

/// A frame sink that saves every live frame as a file of a series, on threads of its own.
/// What waits for them is bounded in bytes. Never overwrites a file. Any thread.
class PFrameSaver : public PFrameSink {
public:
    /// Saves one frame under this path and says how that went. Called on several threads at once.
    using SaveFrame = std::function<PStatus(const QString& path, const PDeviceFrame& frame)>;

    /// The destructor saves what still waits, then returns.
    PFrameSaver(PFileSequence files, SaveFrame saveFrame,
                std::size_t byteLimit = PWriteMemory::defaultLimit());

    /// False if too much waits already, or a file could not be saved before.
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;

    /// Waits until nothing is left to save, at most this long. True if nothing is.
    bool waitUntilIdle(std::chrono::milliseconds atMost) { return m_queue.waitUntilIdle(atMost); }

    /// What has become of the frames so far.
    struct State {
        quint64 saved = 0;
        quint64 waiting = 0; ///< or being written
        quint64 unsaved = 0; ///< refused, or dropped after a failure
        QString error;       ///< why the first failed save failed; nothing is saved after it
    };
    State state() const;

private:
    PFrameWriteQueue m_queue;
};
