// SPDX-License-Identifier: MIT
#include <apps/common/program/PTerminationSignals.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <thread>

namespace {

constexpr timespec patience{2, 0}; // seconds, in which most runs end
constexpr std::array signalsThatEnd{SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> expected{false};
std::atomic<bool> noted{false};

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

/// The signal's usual effect, with the usual exit status.
void endBy(int number) {
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, number);
    std::signal(number, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
    std::raise(number);
}

/// The program does not end by the signal it has recorded: the user is told what it waits for.
void reportWait() {
    std::fprintf(stderr,
                 "%s: still waiting for the camera to return, or for files to be completed; a "
                 "second signal (Ctrl-C) ends the program at once\n",
                 program_invocation_short_name);
}

/// Returns the signal, or 0 if none arrives in time.
int waitForSignal(const sigset_t& set, const timespec& time) {
    for (;;) {
        const int number = sigtimedwait(&set, nullptr, &time);
        if (number > 0 || errno == EAGAIN)
            return std::max(number, 0);
    }
}

void waitForSignals(sigset_t set) {
    int number = 0;
    while (sigwait(&set, &number) == 0) {
        if (!expected || noted.exchange(true))
            endBy(number);
        number = waitForSignal(set, patience);
        if (number != 0)
            endBy(number);
        reportWait();
    }
}

} // namespace

void PTerminationSignals::watch() {
    // Then writing fails with a reason that can be reported, and nothing is left half done.
    std::signal(SIGXFSZ, SIG_IGN);
    const sigset_t set = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    // Runs as long as the process: signals may arrive at any time.
    std::thread(waitForSignals, set).detach();
}

void PTerminationSignals::expect() {
    expected = true;
}

bool PTerminationSignals::isNoted() {
    return noted;
}
