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
    m_first.reset();
    m_interval.reset();
    m_last = 0;
}

GstClockTime PGstTimes::toRunningTime(Clock::time_point arrived, quint64 sequence,
                                      Clock::time_point now, GstClockTime runningTimeNow) {
    const GstClockTime age = toNanoseconds(now - arrived);
    const std::lock_guard lock(m_mutex);
    measure(arrived, sequence);
    m_last = std::max(m_last, runningTimeNow > age ? runningTimeNow - age : 0);
    return m_last;
}

/// A camera that was plugged in again counts from 1.
void PGstTimes::measure(Clock::time_point arrived, quint64 sequence) {
    if (m_interval)
        return;
    if (!m_first || sequence <= m_first->second) {
        m_first = {arrived, sequence};
        return;
    }
    const quint64 frames = sequence - m_first->second;
    if (frames >= measuredFrames)
        m_interval = toNanoseconds(arrived - m_first->first) / frames;
}

std::optional<GstClockTime> PGstTimes::interval() const {
    const std::lock_guard lock(m_mutex);
    return m_interval;
}
