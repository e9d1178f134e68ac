// SPDX-License-Identifier: MIT
#include <PCore/PThread.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

namespace {

/// Counts calls, and loops until it is stopped.
class Worker : public PThread {
public:
    ~Worker() override { stopThread(); }

    void run() override {
        loopThread = QThread::currentThread();
        do {
            ++rounds;
            if (endsItself)
                return;
            if (stopsItself)
                ownStop = stopThread();
            QThread::yieldCurrentThread();
        } while (isThreadRunned());
    }
    PStatus onStart() override {
        ++starts;
        hookThread = QThread::currentThread();
        return startAnswer;
    }
    PStatus onStop() override {
        ++stops;
        runningInStop = isRunning();
        return stopAnswer;
    }

    PStatus startAnswer, stopAnswer, ownStop;
    bool endsItself = false, stopsItself = false, runningInStop = false;
    int starts = 0, stops = 0;
    std::atomic<int> rounds{0};
    QThread* hookThread = nullptr;
    std::atomic<QThread*> loopThread{nullptr};

    bool isInLoop() const { return rounds > 0; }
};

} // namespace

TEST(PThread, runs_its_loop_on_a_thread_of_its_own_until_it_is_stopped) {
    Worker worker;
    EXPECT_FALSE(worker.isThreadRunned());
    EXPECT_TRUE(worker.startThread().isOk());
    EXPECT_TRUE(worker.isThreadRunned());
    ASSERT_TRUE(waitUntil([&] { return worker.isInLoop(); }));
    EXPECT_TRUE(worker.stopThread().isOk());
    EXPECT_FALSE(worker.isThreadRunned());
    EXPECT_TRUE(worker.isFinished());
    EXPECT_EQ(worker.loopThread, &worker);
}

TEST(PThread, calls_each_hook_once_on_the_thread_that_starts_and_stops) {
    Worker worker;
    worker.startThread();
    worker.stopThread();
    EXPECT_EQ(worker.starts, 1);
    EXPECT_EQ(worker.stops, 1);
    EXPECT_EQ(worker.hookThread, QThread::currentThread());
}

TEST(PThread, calls_the_stop_hook_after_the_loop_has_ended) {
    Worker worker;
    worker.runningInStop = true;
    worker.startThread();
    ASSERT_TRUE(waitUntil([&] { return worker.isInLoop(); }));
    worker.stopThread();
    EXPECT_FALSE(worker.runningInStop);
}

TEST(PThread, does_not_start_when_the_start_hook_fails) {
    Worker worker;
    worker.startAnswer = PStatus::failure(u"no camera"_qs);
    EXPECT_EQ(worker.startThread().reason(), u"no camera"_qs);
    EXPECT_FALSE(worker.isThreadRunned());
    EXPECT_FALSE(worker.isRunning());
    EXPECT_TRUE(worker.stopThread().isOk());
    EXPECT_EQ(worker.stops, 0);
}

TEST(PThread, does_nothing_when_started_while_running) {
    Worker worker;
    worker.startThread();
    worker.startAnswer = PStatus::Failed;
    EXPECT_TRUE(worker.startThread().isOk());
    EXPECT_EQ(worker.starts, 1);
}

TEST(PThread, does_nothing_when_stopped_while_not_running) {
    Worker worker;
    worker.stopAnswer = PStatus::Failed;
    EXPECT_TRUE(worker.stopThread().isOk());
    EXPECT_EQ(worker.stops, 0);
}

TEST(PThread, returns_what_the_stop_hook_returns) {
    Worker worker;
    worker.stopAnswer = PStatus::failure(u"lamp still on"_qs);
    worker.startThread();
    EXPECT_EQ(worker.stopThread().reason(), u"lamp still on"_qs);
}

TEST(PThread, can_be_started_again_after_a_stop) {
    Worker worker;
    worker.startThread();
    worker.stopThread();
    const int before = worker.rounds;
    EXPECT_TRUE(worker.startThread().isOk());
    EXPECT_TRUE(waitUntil([&] { return worker.rounds > before; }));
    EXPECT_EQ(worker.starts, 2);
}

TEST(PThread, whose_loop_ended_by_itself_can_be_stopped_and_started) {
    Worker worker;
    worker.endsItself = true;
    worker.startThread();
    ASSERT_TRUE(waitUntil([&] { return worker.isFinished(); }));
    EXPECT_TRUE(worker.isThreadRunned());
    EXPECT_TRUE(worker.startThread().isOk());
    EXPECT_EQ(worker.stops, 1);
    EXPECT_EQ(worker.starts, 2);
    ASSERT_TRUE(waitUntil([&] { return worker.isFinished(); }));
    EXPECT_TRUE(worker.stopThread().isOk());
    EXPECT_EQ(worker.stops, 2);
    EXPECT_EQ(worker.rounds, 2);
}

TEST(PThread, refuses_to_be_stopped_from_its_own_loop) {
    Worker worker;
    worker.setObjectName(u"stream"_qs);
    worker.stopsItself = true;
    worker.startThread();
    ASSERT_TRUE(waitUntil([&] { return worker.isInLoop(); }));
    EXPECT_TRUE(worker.isThreadRunned());
    EXPECT_TRUE(worker.stopThread().isOk());
    EXPECT_FALSE(worker.ownStop.isOk());
    EXPECT_TRUE(worker.ownStop.reason().contains(u"\"stream\""_qs));
    EXPECT_EQ(worker.stops, 1);
}

TEST(PThread, is_called_by_its_object_name) {
    Worker worker;
    worker.setObjectName(u"PTStreamThread"_qs);
    EXPECT_EQ(worker.id(), u"PTStreamThread"_qs);
}

namespace {

/// A class that leaves its loop running, so that the base has to wait for it. The loop uses nothing
/// of this class.
class LeftRunning : public PThread {
public:
    struct Marks {
        std::atomic<bool> inLoop{false};
        std::atomic<bool> ended{false};
    };
    explicit LeftRunning(Marks* marks)
        : m_marks(marks) {}
    void run() override { loop(m_marks, this); }

private:
    static void loop(Marks* marks, const PThread* thread) {
        marks->inLoop = true;
        while (thread->isThreadRunned())
            QThread::yieldCurrentThread();
        marks->ended = true;
    }

    Marks* m_marks;
};

} // namespace

TEST(PThread, waits_for_a_loop_that_still_runs_when_it_is_destroyed) {
    LeftRunning::Marks marks;
    {
        LeftRunning thread(&marks);
        thread.startThread();
        ASSERT_TRUE(waitUntil([&] { return marks.inLoop.load(); }));
    }
    EXPECT_TRUE(marks.ended);
}
