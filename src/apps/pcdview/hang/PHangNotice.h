// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/call/PCallWatchdog.h>

#include <QByteArrayList>
#include <QStringList>

#include <mutex>

#include <sys/types.h>

/// Shows a PHangWindow in a process of its own, while the GUI thread is in a call that does not
/// return and can show nothing. That process ends with this object, also if the viewer dies.
/// Any thread, also while another one hangs.
class PHangNotice {
public:
    /// `command` is the program with its arguments, which runs PHangProgram; empty: nothing is ever
    /// shown.
    explicit PHangNotice(const QStringList& command);
    /// Hides it.
    ~PHangNotice();
    PHangNotice(const PHangNotice&) = delete;
    PHangNotice& operator=(const PHangNotice&) = delete;

    /// Shows that this call has not returned. If the user has closed the window since the last
    /// show(), it is opened again by the next one. Nothing is shown if the process cannot be
    /// started.
    void show(const PCallWatchdog::Call& call);
    /// Closes the window, if it is open.
    void hide();
    /// Hides it for good: show() then does nothing.
    void retire();
    /// True from show() to hide(), unless show() has found that the user has closed the window.
    bool isShown() const;

private:
    void start();
    void finish();
    bool isRunning() const;
    void forget();

    // Guards all members: the watchdog's thread shows, the GUI thread hides. It is not held while a
    // thread waits for a call to a camera.
    mutable std::mutex m_mutex;
    QByteArrayList m_command;
    pid_t m_process = 0; ///< 0: none
    int m_socket = -1;   ///< the other end is the process's standard input
};
