// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QObject>

#include <chrono>
#include <deque>
#include <mutex>

/// Frame-rate counter: counts ticks over a sliding window of the last second. Any thread.
class PCD_EXPORT PFpsCounter : public QObject {
    Q_OBJECT

public:
    using Clock = std::chrono::steady_clock;

    explicit PFpsCounter(QObject* parent = nullptr);

    /// One frame arrived, at `when`.
    void tick(Clock::time_point when = Clock::now());

    /// Frames per second over the window that ends at `now`: the number of intervals between ticks
    /// divided by the time they span; 0 with fewer than two ticks in the window.
    double fps(Clock::time_point now = Clock::now()) const;

    /// Clears all ticks.
    void reset();

private:
    mutable std::mutex m_mutex; // a frame thread adds ticks, the GUI reads fps()
    std::deque<Clock::time_point> m_ticks;
};
