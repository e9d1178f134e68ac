// SPDX-License-Identifier: MIT
#include <apps/common/program/PTerminationSignals.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

namespace {

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

void waitForSignals(sigset_t set) {
    int number = 0;
    while (sigwait(&set, &number) == 0) {
        if (!expected || noted.exchange(true))
            endBy(number);
    }
}

} // namespace

void PTerminationSignals::watch() {
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
    // Then writing fails with a reason that can be reported, and nothing is left half done.
    std::signal(SIGXFSZ, SIG_IGN);
