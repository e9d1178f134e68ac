// SPDX-License-Identifier: MIT
#include <view/StallProbe.h>

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds period(2);

class Knock : public QEvent {
public:
    Knock()
        : QEvent(QEvent::User) {}

    const Clock::time_point posted = Clock::now();
};

} // namespace

StallProbe::StallProbe()
    : m_poster([this] { post(); }) {
}

StallProbe::~StallProbe() {
    finish();
}

Durations StallProbe::finish() {
    m_ending = true;
    if (m_poster.joinable())
        m_poster.join();
    QCoreApplication::sendPostedEvents(this, QEvent::User);
    return m_late;
}

void StallProbe::post() {
    Clock::time_point next = Clock::now();
    while (!m_ending) {
        std::this_thread::sleep_until(next);
        QCoreApplication::postEvent(this, new Knock);
        // Events that this thread has missed are not posted in a burst, as they would all seem to
        // be in time.
        next = std::max(next + period, Clock::now());
    }
}

void StallProbe::customEvent(QEvent* event) {
    m_late.add(Clock::now() - static_cast<Knock*>(event)->posted);
}
