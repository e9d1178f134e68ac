// SPDX-License-Identifier: MIT
// How the pull-mode worker waits while nothing is queued. Nothing is measured with a clock: this
// program replaces the function of Qt with which the worker waits, and records its arguments.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <QDeadlineTimer>
#include <QWaitCondition>

#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <set>

namespace {

struct Waits {
    std::mutex mutex; // written by the worker's thread, read by the test's
    std::set<unsigned long> times;
    std::atomic<int> count{0};
    std::atomic<bool> untilWoken{false};
};

Waits& waits() {
    static Waits all;
    return all;
}

} // namespace

// The plugin's code in this program calls this one. Qt's does the same with the given time.
bool QWaitCondition::wait(QMutex* mutex, unsigned long time) {
    {
        const std::lock_guard guard(waits().mutex);
        waits().times.insert(time);
    }
    ++waits().count;
    // Longer than any test waits for the effect of a push, which should be immediate.
    return wait(mutex, waits().untilWoken ? QDeadlineTimer(20000) : QDeadlineTimer(qint64(time)));
}

namespace {

class IdleWait : public SimFixture {
protected:
    IdleWait() {
        loadScene({SimCameraText()});
        device = open();
        waits().count = 0;
    }
    ~IdleWait() override {
        waits().untilWoken = false;
        if (device == nullptr)
            return;
        worker()->pushEvent(0); // ends a wait that has begun
        worker()->stopThread();
    }

    PTStreamThread* worker() const { return device->pullThread(); }

    /// Starts the worker, and returns when only a push can end its wait.
    void idleUntilWoken() {
        waits().untilWoken = true;
        ASSERT_TRUE(worker()->startThread().isOk());
        ASSERT_TRUE(waitUntil([] { return waits().count >= 1; }));
        // A push needs the queues' lock, which the wait releases: so no push comes too early.
    }

    std::unique_ptr<PTDevice> device;
};

} // namespace

TEST_F(IdleWait, is_5_ms_again_and_again) {
    ASSERT_TRUE(worker()->startThread().isOk());
    ASSERT_TRUE(waitUntil([] { return waits().count >= 3; }));
    const std::lock_guard guard(waits().mutex);
    EXPECT_THAT(waits().times, testing::ElementsAre(5ul));
}

TEST_F(IdleWait, ends_when_an_event_is_pushed) {
    idleUntilWoken();
    const int before = waits().count;
    worker()->pushEvent(6); // ignored: the worker waits again
    EXPECT_TRUE(waitUntil([&] { return waits().count > before; }, std::chrono::seconds(5)));
}

TEST_F(IdleWait, ends_when_an_image_is_pushed) {
    idleUntilWoken();
    const int before = waits().count;
    worker()->pushData(PImage());
    EXPECT_TRUE(waitUntil([&] { return waits().count > before; }, std::chrono::seconds(5)));
}
