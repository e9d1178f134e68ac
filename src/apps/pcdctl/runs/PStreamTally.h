// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PFpsCounter.h>

#include <PDip/PImage.h>

/// Counts the frames of a stream and computes their rates from their times of arrival. One thread.
class PStreamTally {
public:
    using Clock = PFpsCounter::Clock;

    /// Counts a frame, at the time of arrival that it is stamped with.
    void add(const PImage& image);

    quint64 frames() const { return m_frames; }
    /// The time from the first frame to the last.
    double seconds() const;
    /// Rates over the whole stream: intervals between frames, or the bytes that arrived in them,
    /// per second of seconds(); 0 with fewer than two frames. A megabyte is a million bytes.
    double fps() const;
    double megabytesPerSecond() const;
    /// The rate over the last second.
    double currentFps() const { return m_current.fps(); }
    /// The longest time between two frames, and the number of the frame before it; 0 with fewer
    /// than two.
    struct Gap {
        double seconds = 0;
        quint64 after = 0;
    };
    const Gap& longestGap() const { return m_longestGap; }
    /// Bytes of the newest frame.
    std::size_t frameBytes() const { return m_frameBytes; }

private:
    double perSecond(double amount) const;
    void noteGap(Clock::time_point arrival);

    PFpsCounter m_current;
    quint64 m_frames = 0;
    quint64 m_bytesAfterFirst = 0;
    std::size_t m_frameBytes = 0;
    Gap m_longestGap;
    Clock::time_point m_first;
    Clock::time_point m_last;
};
