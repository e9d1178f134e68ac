// SPDX-License-Identifier: MIT
#include <PCore/PThread.h>

#include <PCore/PFaultStack.h>

PThread::PThread(QObject* parent)
    : QThread(parent) {
    // Without a receiver the functions run on the thread itself, right before and after its loop.
    connect(this, &QThread::started, [] { PFaultStack::giveThread(); });
    connect(this, &QThread::finished,
            [this] { m_loopEnded.store(true, std::memory_order_release); });
}

PThread::~PThread() {
    m_runned.store(false, std::memory_order_release);
    waitForLoop();
}

PStatus PThread::startThread() {
    if (isThreadRunned() && isRunning())
        return PStatus::Ok;
    // A loop that ended on its own was never stopped: onStop() must still be called for its
    // onStart().
    if (const PStatus stopped = stopThread(); !stopped.isOk())
        return stopped;
    if (const PStatus started = onStart(); !started.isOk())
        return started;
    m_runned.store(true, std::memory_order_release);
    m_loopEnded.store(false, std::memory_order_relaxed);
    start();
    if (isRunning() || isFinished())
        return PStatus::Ok;
    stopThread();
    return PStatus::failure(u"the system could not start the thread \"%1\""_qs.arg(id()));
}

PStatus PThread::stopThread() {
    // A thread that waits for itself would never end.
    if (QThread::currentThread() == this) {
        return PStatus::failure(
            u"the thread \"%1\" cannot stop itself from its own loop"_qs.arg(id()));
    }
    if (!m_runned.exchange(false, std::memory_order_acq_rel))
        return PStatus::Ok;
    waitForLoop();
    return onStop();
}

/// Makes everything that the loop did visible to the caller. wait() does that too, but with a lock
/// inside Qt that the thread sanitizer cannot see.
void PThread::waitForLoop() {
    wait();
    m_loopEnded.load(std::memory_order_acquire);
}

PStatus PThread::onStart() {
    return PStatus::Ok;
}

PStatus PThread::onStop() {
    return PStatus::Ok;
}

QString PThread::id() const {
    return objectName();
}

#include "moc_PThread.cpp"
