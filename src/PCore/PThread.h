// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QThread>

#include <atomic>

/// A worker thread with a start hook, a stop hook and a flag that its loop tests.
/// Start and stop it from one thread, the one that owns the object; a derived class writes run()
/// as a loop `while (isThreadRunned())` that never blocks for long.
class PThread : public QThread {
    Q_OBJECT

public:
    explicit PThread(QObject* parent = nullptr);

    /// Waits for a loop that still runs. A derived class whose members the loop uses must have been
    /// stopped before its own destructor: by then it is too late here.
    ~PThread() override;

    /// Calls onStart() on the calling thread and starts the loop if it answered Ok. Starting a
    /// running thread does nothing and is Ok; one whose loop ended by itself is stopped first.
    /// Returns what onStart() answered, or a failure if the system has no thread to give.
    PStatus startThread();

    /// Asks the loop to end, waits until it has, then calls onStop() on the calling thread and
    /// returns its answer. Stopping a thread that does not run does nothing and is Ok.
    /// Called from the loop itself, it fails and does nothing.
    PStatus stopThread();

    /// True from startThread() until stopThread(): the loop should go on. Any thread.
    bool isThreadRunned() const { return m_runned.load(std::memory_order_acquire); }

    /// The loop; runs on the new thread.
    void run() override = 0;
    /// Before the loop starts; a failure keeps it from starting. On the thread of startThread().
    virtual PStatus onStart();
    /// After the loop has ended. On the thread of stopThread().
    virtual PStatus onStop();
    /// Name of the thread in logs: the object name.
    virtual QString id() const;

private:
    void waitForLoop();

    std::atomic<bool> m_runned{false};
    std::atomic<bool> m_loopEnded{true};
};
