// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PQtLoop.h>

#include <apps/common/program/PExceptionText.h>

#include <PLog/PLog.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QThread>

#include <clocale>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::chrono::seconds exitPatience{2};
const char* const noGlib = "QT_NO_GLIB";

/// One call to Qt's thread, which owns a part of it for as long as it may still run.
struct LoopCall {
    enum class State { Waiting, Running, Ended, Abandoned };

    std::mutex mutex; // guards the state, between both threads; not held while the work runs
    std::condition_variable changed;
    State state = State::Waiting;

    bool move(State from, State to) {
        const std::lock_guard lock(mutex);
        if (state != from)
            return false;
        state = to;
        changed.notify_all();
        return true;
    }

    bool wait(std::chrono::milliseconds timeout) {
        std::unique_lock lock(mutex);
        if (changed.wait_for(lock, timeout, [this] { return state == State::Ended; }))
            return true;
        if (state == State::Waiting)
            state = State::Abandoned;
        return false;
    }
};

/// What exists once in a process. It is never deleted: Qt's thread may outlast static objects.
struct LoopGlobals {
    std::mutex mutex; // guards all of this, from any thread; not held while work runs
    std::condition_variable started;
    bool isStarting = false;
    PQtLoop::Work farewell;
};

LoopGlobals& loopGlobals() {
    static LoopGlobals* const globals = new LoopGlobals;
    return *globals;
}

void runGuarded(const PQtLoop::Work& work) {
    try {
        work();
    } catch (const std::exception& error) {
        qWarning("pcdsrc: %s", error.what());
    }
}

void runFarewell() {
    PQtLoop::Work farewell;
    {
        LoopGlobals& globals = loopGlobals();
        const std::lock_guard lock(globals.mutex);
        farewell = std::exchange(globals.farewell, {});
    }
    if (farewell)
        runGuarded(farewell);
}

/// At exit, before the libraries' static objects are destroyed: closes the cameras, and then keeps
/// Qt's thread from touching any of these objects. It is not joined: what exits may hold locks that
/// it needs.
void standStill() {
    const auto call = std::make_shared<LoopCall>();
    PQtLoop::post([call] {
        runFarewell();
        call->move(LoopCall::State::Waiting, LoopCall::State::Ended);
        for (;;)
            pause();
    });
    call->wait(exitPatience);
}

/// The application must have an event dispatcher of its own: with GLib's it would run the default
/// main context, which is the program's. Qt also sets the locale; how numbers are read and printed
/// stays as the program had it.
void runApplication() {
    static int count = 1;
    static char name[] = "pcdsrc";
    static char* arguments[] = {name, nullptr};
    const QByteArray numbers = std::setlocale(LC_NUMERIC, nullptr);
    const bool hasChoice = qEnvironmentVariableIsSet(noGlib);
    if (!hasChoice)
        qputenv(noGlib, "1");
    auto* const application =
        new QCoreApplication(count, arguments); // never deleted, like its thread
    if (!hasChoice)
        qunsetenv(noGlib);
    std::setlocale(LC_NUMERIC, numbers.constData());
    PLog::installQtMessageHandler(); // the program has no Qt of its own that would want them
    {
        LoopGlobals& globals = loopGlobals();
        const std::lock_guard lock(globals.mutex);
        globals.isStarting = false;
    }
    loopGlobals().started.notify_all();
    std::atexit(standStill);
    application->exec();
}

/// Signals are for the program's own threads. The new thread inherits the mask. False if the system
/// starts none.
bool startThread() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    bool isStarted = true;
    try {
        // The program's threads must be free to do what they like, and Qt needs one that runs
        // events.
        std::thread(runApplication).detach();
    } catch (const std::system_error& error) {
        isStarted = false;
        qWarning("pcdsrc: %s", qUtf8Printable(PExceptionText::of(error)));
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return isStarted;
}

/// Null if there is none, and none can be made.
QCoreApplication* findApplication() {
    LoopGlobals& globals = loopGlobals();
    std::unique_lock lock(globals.mutex);
    if (QCoreApplication::instance() == nullptr && !globals.isStarting) {
        globals.isStarting = startThread(); // until the thread ends it
    }
    globals.started.wait(lock, [&] { return !globals.isStarting; });
    return QCoreApplication::instance();
}

} // namespace

bool PQtLoop::call(const Work& work, std::chrono::milliseconds timeout) {
    QCoreApplication* const application = findApplication();
    if (application == nullptr)
        return false;
    if (QThread::currentThread() == application->thread()) {
        runGuarded(work);
        return true;
    }
    const auto call = std::make_shared<LoopCall>();
    const auto run = [call, work] {
        if (!call->move(LoopCall::State::Waiting, LoopCall::State::Running))
            return;
        runGuarded(work);
        call->move(LoopCall::State::Running, LoopCall::State::Ended);
    };
    // To Qt's thread: devices belong to it.
    QMetaObject::invokeMethod(application, run, Qt::QueuedConnection);
    return call->wait(timeout);
}

void PQtLoop::post(const Work& work) {
    QCoreApplication* const application = findApplication();
    if (application == nullptr)
        return;
    const auto run = [work] { runGuarded(work); };
    // To Qt's thread, from threads that must not wait for it.
    QMetaObject::invokeMethod(application, run, Qt::QueuedConnection);
}

void PQtLoop::setFarewell(const Work& work) {
    LoopGlobals& globals = loopGlobals();
    const std::lock_guard lock(globals.mutex);
    globals.farewell = work;
    static bool isRegistered = false;
    if (!std::exchange(isRegistered, true))
        qAddPostRoutine(runFarewell); // for a program that has its own application
}
