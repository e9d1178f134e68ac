// SPDX-License-Identifier: MIT
#include <PCore/work/PPostedCalls.h>

#include <PCore/work/PGuardedCall.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <utility>

void PPostedCalls::post(std::function<void()> call) {
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
    }
    // The hop to the object's thread. Not invokeMethod() with the call itself: that would change
    // threads under a lock inside Qt, which the thread sanitizer cannot see. This event carries
    // nothing between the threads, only the request to check for calls.
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void PPostedCalls::runAll() {
    std::deque<std::function<void()>> calls;
    {
        // Called without the lock: a call may post another one.
        const std::lock_guard lock(m_mutex);
        calls.swap(m_calls);
    }
    const QPointer<PPostedCalls> self(this);
    for (const std::function<void()>& call : calls) {
        PGuardedCall::logged(call);
        if (!self)
            return;
    }
}

void PPostedCalls::customEvent(QEvent*) {
    runAll();
}

#include "moc_PPostedCalls.cpp"
