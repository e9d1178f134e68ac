// SPDX-License-Identifier: MIT
#include "PInterruptibleLoop.h"

#include <QDeadlineTimer>

#include <array>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array signalsThatEnd{SIGINT, SIGTERM, SIGHUP};
constexpr std::chrono::milliseconds heartbeat(50);

// A signal handler may do next to nothing; a byte in a pipe carries the news to the event loop.
std::array<int, 2> signalPipe{-1, -1};

void noteSignal(int) {
    const int before = errno;
    const char byte = 1;
    // The pipe cannot be full: there is one byte a signal, and each signal comes here once.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = before;
}

/// What the signals did before, for when the loop is gone.
std::array<struct sigaction, signalsThatEnd.size()> actionsBefore;

void installHandlers() {
    struct sigaction action {};
    action.sa_handler = noteSignal;
    // Only once: the next signal of the kind has its usual effect.
    action.sa_flags = int(unsigned(SA_RESTART) | SA_RESETHAND);
    for (std::size_t i = 0; i < signalsThatEnd.size(); ++i) {
        sigaction(signalsThatEnd[i], nullptr, &actionsBefore[i]);
        // What was ignored from the start stays so: nohup, and jobs in the background of a script.
        if (actionsBefore[i].sa_handler != SIG_IGN)
            sigaction(signalsThatEnd[i], &action, nullptr);
    }
}

} // namespace

PInterruptibleLoop::PInterruptibleLoop() {
    if (pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        m_interrupted = true;
        m_notifier->setEnabled(false);
    });
    installHandlers();
    m_heartbeat.start(heartbeat);
}

PInterruptibleLoop::~PInterruptibleLoop() {
    for (std::size_t i = 0; i < signalsThatEnd.size(); ++i)
        sigaction(signalsThatEnd[i], &actionsBefore[i], nullptr);
    m_notifier.reset();
    for (int& end : signalPipe) {
        close(end);
        end = -1;
    }
}

bool PInterruptibleLoop::waitFor(const std::function<bool()>& predicate,
                                 std::optional<std::chrono::milliseconds> atMost) {
    return run(predicate, atMost, true);
}

bool PInterruptibleLoop::drain(const std::function<bool()>& predicate,
                               std::chrono::milliseconds atMost) {
    return run(predicate, atMost, false);
}

bool PInterruptibleLoop::run(const std::function<bool()>& predicate,
                             std::optional<std::chrono::milliseconds> atMost, bool interruptible) {
    const QDeadlineTimer deadline =
        atMost ? QDeadlineTimer(*atMost) : QDeadlineTimer(QDeadlineTimer::Forever);
    while (!predicate()) {
        if (deadline.hasExpired() || (interruptible && m_interrupted))
            return false;
        m_loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
