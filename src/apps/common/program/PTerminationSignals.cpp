// SPDX-License-Identifier: MIT
#include <apps/common/program/PTerminationSignals.h>

#include <apps/common/hang/POverdueCalls.h>
#include <apps/common/hang/PStderrLine.h>

#include <PCore/PFaultStack.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::seconds patience(2); // in which most runs end
constexpr std::array signalsThatEnd{SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> expected{false};
std::atomic<bool> noted{false};
std::atomic<bool> acknowledged{false};

/// What happens if nobody acknowledges a signal.
struct GivingUp {
    std::mutex mutex; // guards both members: the main thread sets them, that of the signals reads
    std::chrono::milliseconds time{};
    std::function<void()> call;
};

GivingUp& givingUp() {
    static auto* const object = new GivingUp; // the thread may outlive static objects
    return *object;
}

bool isIgnored(int number) {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t watchedSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : signalsThatEnd) {
        if (!isIgnored(number))
            sigaddset(&set, number);
    }
    return set;
}

void print(const QString& text) {
    PStderrLine::write(QString::fromLocal8Bit(program_invocation_short_name) + u": "_qs + text);
}

/// The signal's usual effect, with the usual exit status.
void endBy(int number) {
    const QString calls = POverdueCalls::names();
    if (!calls.isEmpty())
        print(u"ended while waiting for "_qs + calls);
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, number);
    std::signal(number, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
    std::raise(number);
}

/// The program does not end by the signal it has recorded: the user is told what it waits for.
void reportWait() {
    const QString calls = POverdueCalls::names();
    print(u"still waiting for %1; a second signal (Ctrl-C) ends the program at once"_qs.arg(
        calls.isEmpty() ? u"the camera to return, or for files to be completed"_qs : calls));
}

/// Returns the signal, or 0 if none arrives in time.
int waitForSignal(const sigset_t& set, std::chrono::milliseconds time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const timespec limit{seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
    for (;;) {
        const int number = sigtimedwait(&set, nullptr, &limit);
        if (number > 0 || errno == EAGAIN)
            return std::max(number, 0);
    }
}

/// Another signal ends the program.
void waitOrEnd(const sigset_t& set, std::chrono::milliseconds time) {
    const int number = waitForSignal(set, time);
    if (number != 0)
        endBy(number);
}

/// Ends the program if it does not react to the signal, and should.
void endUnlessAcknowledged(const sigset_t& set) {
    std::unique_lock lock(givingUp().mutex);
    const auto [time, call] = std::pair(givingUp().time, givingUp().call);
    lock.unlock();
    if (!call)
        return;
    if (!acknowledged)
        waitOrEnd(set, time);
    if (acknowledged)
        return;
    try {
        // A thread of its own: this one waits for a second signal meanwhile.
        std::thread([call = call] {
            PFaultStack::giveThread();
            call();
        }).detach();
    } catch (const std::system_error&) { // the system has no more of them
        call();
    }
}

void waitForSignals(sigset_t set) {
    PFaultStack::giveThread();
    int number = 0;
    while (sigwait(&set, &number) == 0) {
        if (!expected || noted.exchange(true))
            endBy(number);
        if (POverdueCalls::names().isEmpty())
            waitOrEnd(set, patience);
        reportWait();
        endUnlessAcknowledged(set);
    }
}

} // namespace

void PTerminationSignals::watch() {
    // Then writing fails with a reason that can be reported, and nothing is left half done.
    std::signal(SIGXFSZ, SIG_IGN);
    const sigset_t set = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    try {
        // Runs as long as the process: signals may arrive at any time.
        std::thread(waitForSignals, set).detach();
    } catch (const std::system_error&) {
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr); // they end the program as usual
    }
}

void PTerminationSignals::expect() {
    expected = true;
}

void PTerminationSignals::expect(std::chrono::milliseconds time, std::function<void()> giveUp) {
    {
        const std::lock_guard lock(givingUp().mutex);
        givingUp().time = time;
        givingUp().call = std::move(giveUp);
    }
    expect();
}

bool PTerminationSignals::isNoted() {
    return noted;
}

void PTerminationSignals::acknowledge() {
    acknowledged = true;
}

bool PTerminationSignals::isAcknowledged() {
    return acknowledged;
}
