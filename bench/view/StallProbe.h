// SPDX-License-Identifier: MIT
#pragma once

#include <view/Durations.h>

#include <QObject>

#include <atomic>
#include <thread>

/// Measures how late the main thread gets to its events, as long as it lives: a thread of its own
/// posts one every 2 ms, also while earlier ones wait, so that a long stall weighs as long as it
/// lasts. The GUI thread.
class StallProbe : public QObject {
public:
    StallProbe();
    ~StallProbe() override;

    /// Ends the measurement. What is on its way still counts.
    Durations finish();

protected:
    void customEvent(QEvent* event) override;

private:
    void post();

    Durations m_late;
    std::atomic<bool> m_ending{false};
    std::thread m_poster;
};
