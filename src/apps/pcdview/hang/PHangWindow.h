// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/call/PCallWatchdog.h>

#include <QDialog>
#include <QTimer>

#include <chrono>
#include <optional>

class QLabel;
class QPushButton;

/// Says for which call to a camera the viewer waits, and for how long, and offers to end the
/// viewer. A window of another process, because the viewer's own cannot change meanwhile
/// (PHangNotice). The GUI thread.
class PHangWindow : public QDialog {
    Q_OBJECT

public:
    /// `endingTime`: how long the viewer waits for the call after endRequested(), before it
    /// completes its files and ends.
    explicit PHangWindow(std::chrono::milliseconds endingTime);

    /// Shows this call; the time counts up from now on.
    void setCall(const PCallWatchdog::Call& call);

signals:
    /// The user wants the viewer to end; emitted again, to end at once.
    void endRequested();

private:
    using Clock = std::chrono::steady_clock;

    void makeLayout();
    void requestEnd();
    void refresh();
    static QString timeText(std::chrono::seconds time);
    QString adviceText() const;

    const std::chrono::milliseconds m_endingTime;
    QLabel* m_heading; // children
    QLabel* m_call;
    QLabel* m_time;
    QLabel* m_advice;
    QPushButton* m_end;
    QPushButton* m_wait;
    QTimer m_tick;
    Clock::time_point m_since;                     ///< when the call began
    std::optional<Clock::time_point> m_endRequest; ///< the first one
};
