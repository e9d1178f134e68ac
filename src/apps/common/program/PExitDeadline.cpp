// SPDX-License-Identifier: MIT
#include <apps/common/program/PExitDeadline.h>

#include <apps/common/hang/POverdueCalls.h>
#include <apps/common/hang/PStderrLine.h>

#include <PCore/PFaultStack.h>

#include <unistd.h>

PExitDeadline::PExitDeadline(std::chrono::milliseconds time, const QString& message, int code)
    // A thread of its own: the main thread may be in a call that never returns.
    : m_thread([this, time, message, code] { wait(time, message, code); }) {
}

PExitDeadline::~PExitDeadline() {
    {
        const std::lock_guard lock(m_mutex);
        m_isMet = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void PExitDeadline::wait(std::chrono::milliseconds time, const QString& message, int code) {
    PFaultStack::giveThread();
    std::unique_lock lock(m_mutex);
    if (m_changed.wait_for(lock, time, [this] { return m_isMet; }))
        return;
    const QString calls = POverdueCalls::names();
    PStderrLine::write(calls.isEmpty() ? message : message + u": "_qs + calls);
    // Not exit(): it would wait for locks that the call in progress holds.
    ::_exit(code);
}
