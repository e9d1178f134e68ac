// SPDX-License-Identifier: MIT
#pragma once

#include <view/Durations.h>

#include <QObject>

#include <atomic>
#include <thread>

/// Measures how late the main thread handles its events, as long as this object exists: a separate
/// thread posts one every 2 ms, even while earlier ones wait, so that a stall counts in proportion
/// to its length. The GUI thread.
class StallProbe : public QObject {
public:
    StallProbe();
    ~StallProbe() override;

    /// Ends the measurement. Pending events still count.
    Durations finish();

protected:
    void customEvent(QEvent* event) override;

private:
    void post();

    Durations m_late;
    std::atomic<bool> m_ending{false};
    std::thread m_poster;
};
