// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/hang/PHangNotice.h>

#include <PCore/call/PCallWatchdog.h>
#include <PCore/work/PPostedCalls.h>

#include <QObject>

class PCallSlot;

/// Reports calls to cameras that do not return: in the log while they last, which other threads
/// write to, and then to the window, which cannot show anything while the GUI thread is in such a
/// call. If that takes several seconds, PHangNotice shows it meanwhile. The GUI thread.
class PCallReporter : public QObject {
    Q_OBJECT

public:
    /// `patience`: the time after which a call is reported; one of this thread is shown after four
    /// times as long, by `noticeCommand` as PHangNotice has it.
    PCallReporter(std::chrono::milliseconds patience, const QStringList& noticeCommand);

    /// Shows no call while it lasts from now on: the user has closed the window.
    void stopNotices() { m_notice.retire(); }

signals:
    /// A call that was reported has returned; `message` says which, and how long it took.
    void returned(const QString& message);

private:
    void report(const PCallWatchdog::Call& call);
    void reportReturn(const PCallWatchdog::Call& call);
    void showIfLong(const PCallWatchdog::Call& call);

    const std::chrono::milliseconds m_noticeAfter;
    const PCallSlot& m_guiThread;
    PHangNotice m_notice;
    PPostedCalls m_messages;
    PCallWatchdog m_watchdog; // last: it posts messages until it is destroyed
};
