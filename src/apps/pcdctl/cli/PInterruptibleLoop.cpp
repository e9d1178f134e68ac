// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PInterruptibleLoop.h>

#include <apps/common/program/PTerminationSignals.h>

#include <QDeadlineTimer>

namespace {

constexpr std::chrono::milliseconds heartbeat(50);

} // namespace

PInterruptibleLoop::PInterruptibleLoop() {
    PTerminationSignals::expect();
    m_heartbeat.start(heartbeat);
}

bool PInterruptibleLoop::isInterrupted() const {
    return PTerminationSignals::isNoted();
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
        if (deadline.hasExpired() || (interruptible && isInterrupted()))
            return false;
        m_loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
