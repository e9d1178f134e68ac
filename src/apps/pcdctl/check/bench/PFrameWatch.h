// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameSink.h>

#include <QByteArray>
#include <QSize>

#include <mutex>
#include <optional>

/// Counts and compares the frames of a device as they arrive. Any thread.
class PFrameWatch : public PFrameSink {
public:
    /// What has been seen since the last reset().
    struct Seen {
        quint64 live = 0;
        quint64 stills = 0;
        QSize liveSize;             ///< of the newest live frame, in pixels
        QSize stillSize;            ///< of the newest still, in pixels
        bool hasMixedForms = false; ///< two live frames of the same size had different formats
        bool hasChanged = false;    ///< the pixels of a frame changed after it was passed on
    };

    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;

    /// A consistent copy.
    Seen seen() const;
    /// Forgets everything.
    void reset();

private:
    void takeLive(const PImage& image);

    mutable std::mutex m_mutex; // frames come on the camera's threads, questions on the main thread
    Seen m_seen;
    PImage m_kept;                        ///< the first live frame
    QByteArray m_keptBytes;               ///< the beginning of its pixels as they were
    std::optional<PImageHeader> m_header; ///< of the newest live frame
};
