// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameSink.h>

#include <QString>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

/// The frames on their way from a camera to the pipeline, at most a set number: while the pipeline
/// is slower than the camera, the oldest one that waits is dropped and counted for each new one.
/// What else happens to the camera is told to the pipeline in the same order. Any thread.
class PGstFrameQueue : public PFrameSink {
public:
    /// One thing that has happened.
    struct Item {
        /// The kinds of things.
        enum class Kind {
            Frame,
            Unplugged, ///< the text names the camera
            Plugged,   ///< again, and the stream has been started
            Warning,   ///< the text says why a setting was not applied
            Failed,    ///< the text says why the stream cannot go on
        };
        Kind kind = Kind::Frame;
        PDeviceFrame frame;
        quint64 dropped = 0; ///< frames lost since the one before this one
        QString text;
    };

    /// The most frames that may wait, 1 or more.
    void setCapacity(std::size_t frames);
    /// Accepts frames from now on; counts begin at 0.
    void begin();
    /// Drops the frames that wait, and accepts no more; what else has happened is still told.
    void end();
    /// Drops all that waits, and accepts no frames: the next items are those of another camera.
    void clear();

    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;
    /// Adds anything but a frame.
    void report(Item::Kind kind, const QString& text);

    /// Waits for the next item; empty if flushing began.
    std::optional<Item> take();
    /// While it is on, take() returns at once, and so does one that waits.
    void setFlushing(bool flushing);

    /// What has happened to the frames since begin(): `arrived` is the sum of the others.
    struct Counts {
        quint64 arrived = 0;   ///< from the camera
        quint64 delivered = 0; ///< given to the pipeline
        quint64 dropped = 0;   ///< because the pipeline was slower
        quint64 discarded = 0; ///< waited when the stream was stopped
        quint64 waiting = 0;
    };
    /// All at one moment.
    Counts counts() const;

private:
    void dropOldest();
    void discard();

    mutable std::mutex m_mutex; ///< guards all below; held only to move items
    std::condition_variable m_changed;
    std::deque<Item> m_items;
    std::size_t m_capacity = 4;
    Counts m_counts;
    quint64 m_droppedSince = 0; ///< the last frame taken
    bool m_isAccepting = false;
    bool m_isFlushing = false;
};
