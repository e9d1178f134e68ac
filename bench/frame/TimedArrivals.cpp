// SPDX-License-Identifier: MIT
#include <frame/TimedArrivals.h>

#include <frame/OwnCore.h>
#include <frame/SdkThread.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <thread>

namespace {

constexpr std::chrono::milliseconds period(1);

}

TimedArrivals::TimedArrivals(int count)
    : m_sent(std::size_t(count)) {
    m_arrived.reserve(m_sent.size());
}

void TimedArrivals::send(const std::function<void()>& sendOne) {
    const OwnCore receiving(0);
    SdkThread::run([&] {
        const OwnCore sending(1);
        auto next = Clock::now();
        for (Clock::time_point& sent : m_sent) {
            next += period;
            std::this_thread::sleep_until(next);
            sent = Clock::now();
            sendOne();
        }
    });
    QCoreApplication::sendPostedEvents(); // the last one, if the thread's end came first
}

void TimedArrivals::arrived() {
    m_arrived.push_back(Clock::now());
}

double TimedArrivals::findQuantileUs(double share) const {
    if (m_arrived.size() != m_sent.size())
        throw std::runtime_error("not everything arrived");
    std::vector<double> times;
    for (std::size_t i = 0; i < m_sent.size(); ++i)
        times.push_back(
            std::chrono::duration<double, std::micro>(m_arrived[i] - m_sent[i]).count());
    const auto place = times.begin() + std::ptrdiff_t(double(times.size() - 1) * share);
    std::nth_element(times.begin(), place, times.end());
    return *place;
}
