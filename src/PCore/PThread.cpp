// SPDX-License-Identifier: MIT
#include <PCore/PThread.h>

PThread::PThread(QObject* parent)
    : QThread(parent) {
}

PThread::~PThread() {
    m_runned.store(false, std::memory_order_release);
    wait();
}

PStatus PThread::startThread() {
    if (isThreadRunned() && isRunning())
        return PStatus::Ok;
    // A loop that ended by itself was never stopped: onStop() still has to answer its onStart().
    if (const PStatus stopped = stopThread(); !stopped.isOk())
        return stopped;
    if (const PStatus started = onStart(); !started.isOk())
        return started;
    m_runned.store(true, std::memory_order_release);
    start();
    if (isRunning() || isFinished())
        return PStatus::Ok;
    stopThread();
    return PStatus::failure(
        QStringLiteral("the system could not start the thread \"%1\"").arg(id()));
}

PStatus PThread::stopThread() {
    // Waiting for itself would never end.
    if (QThread::currentThread() == this) {
        return PStatus::failure(
            QStringLiteral("the thread \"%1\" cannot stop itself from its own loop").arg(id()));
    }
    if (!m_runned.exchange(false, std::memory_order_acq_rel))
        return PStatus::Ok;
    wait();
    return onStop();
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
