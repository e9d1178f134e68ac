// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstTimes.h>

#include <algorithm>

namespace {

GstClockTime toNanoseconds(PGstTimes::Clock::duration duration) {
    using std::chrono::nanoseconds;
    const auto count = std::chrono::duration_cast<nanoseconds>(duration).count();
    return GstClockTime(std::max<nanoseconds::rep>(count, 0));
}

} // namespace

void PGstTimes::reset() {
    const std::lock_guard lock(m_mutex);
    m_lastArrival.reset();
    m_interval.reset();
    m_last = 0;
}

GstClockTime PGstTimes::toRunningTime(Clock::time_point arrived, Clock::time_point now,
                                      GstClockTime runningTimeNow) {
    const GstClockTime age = toNanoseconds(now - arrived);
    const std::lock_guard lock(m_mutex);
    if (m_lastArrival && arrived > *m_lastArrival) {
        const GstClockTime interval = toNanoseconds(arrived - *m_lastArrival);
        m_interval = std::min(m_interval.value_or(interval), interval);
    }
    m_lastArrival = arrived;
    m_last = std::max(m_last, runningTimeNow > age ? runningTimeNow - age : 0);
    return m_last;
}

std::optional<GstClockTime> PGstTimes::interval() const {
    const std::lock_guard lock(m_mutex);
    return m_interval;
}
