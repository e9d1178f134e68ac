// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QThread>

#include <atomic>

/// A worker thread with a start hook, a stop hook and a flag that its loop tests.
/// Start and stop it from the thread that owns the object; a derived class implements run() as a
/// loop `while (isThreadRunned())` that never blocks for long.
class PCD_EXPORT PThread : public QThread {
    Q_OBJECT

public:
    explicit PThread(QObject* parent = nullptr);

    /// Waits for a running loop. If the loop uses members of a derived class, stop the thread
    /// before that class's destructor ends: here it is too late.
    ~PThread() override;

    /// Calls onStart() on the calling thread and starts the loop if it returned Ok. Starting a
    /// running thread does nothing and returns Ok; one whose loop ended on its own is stopped
    /// first. Returns the result of onStart(), or a failure if the system cannot create a thread.
    PStatus startThread();

    /// Signals the loop to end, waits for it, then calls onStop() on the calling thread and returns
    /// its result. Stopping a thread that does not run does nothing and returns Ok. Called from the
    /// loop itself, it fails and does nothing.
    PStatus stopThread();

    /// True from startThread() until stopThread(): the loop should continue. Any thread.
    bool isThreadRunned() const { return m_runned.load(std::memory_order_acquire); }

    /// The loop; runs on the new thread.
    void run() override = 0;
    /// Called before the loop starts; a failure prevents that. On the thread of startThread().
    virtual PStatus onStart();
    /// Called after the loop has ended. On the thread of stopThread().
    virtual PStatus onStop();
    /// The name of the thread in logs: the object name.
    virtual QString id() const;

private:
    void waitForLoop();

    std::atomic<bool> m_runned{false};
    std::atomic<bool> m_loopEnded{true};
};
