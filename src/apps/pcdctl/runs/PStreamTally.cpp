// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PStreamTally.h>

#include <PCd/frame/PFrameStamp.h>

namespace {

PStreamTally::Clock::time_point arrivalTime(const PImage& image) {
    const auto stamp = std::dynamic_pointer_cast<const PFrameStamp>(image.attachment());
    return stamp ? stamp->arrived : PStreamTally::Clock::now();
}

} // namespace

void PStreamTally::add(const PImage& image) {
    const Clock::time_point arrival = arrivalTime(image);
    noteGap(arrival);
    m_last = arrival;
    m_frameBytes = image.dataSize();
    if (m_frames == 0)
        m_first = m_last;
    else
        m_bytesAfterFirst += m_frameBytes;
    ++m_frames;
    m_current.tick(m_last);
}

void PStreamTally::noteGap(Clock::time_point arrival) {
    const double gap = std::chrono::duration<double>(arrival - m_last).count();
    if (m_frames > 0 && gap > m_longestGap.seconds)
        m_longestGap = {gap, m_frames};
}

double PStreamTally::seconds() const {
    return std::chrono::duration<double>(m_last - m_first).count();
}

double PStreamTally::perSecond(double amount) const {
    return seconds() > 0 ? amount / seconds() : 0;
}

double PStreamTally::fps() const {
    return m_frames < 2 ? 0 : perSecond(double(m_frames - 1));
}

double PStreamTally::megabytesPerSecond() const {
    return perSecond(double(m_bytesAfterFirst) / 1e6);
}
