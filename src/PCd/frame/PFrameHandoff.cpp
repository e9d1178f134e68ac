// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameHandoff.h>

#include <utility>

PFrameHandoff::PFrameHandoff(std::size_t byteLimit)
    : m_byteLimit(byteLimit) {
}

bool PFrameHandoff::push(Entry entry) {
    const std::lock_guard lock(m_mutex);
    const std::size_t bytes = liveBytes(entry);
    // The new frame is dropped, not the oldest: a triggered sequence keeps its beginning complete,
    // and the device keeps its newest frame separately.
    if (bytes > 0 && m_liveBytes > 0 && m_liveBytes + bytes > m_byteLimit)
        return false;
    m_entries.push_back(std::move(entry));
    m_liveBytes += bytes;
    return true;
}

std::optional<PFrameHandoff::Entry> PFrameHandoff::take() {
    const std::lock_guard lock(m_mutex);
    if (m_entries.empty())
        return std::nullopt;
    Entry entry = std::move(m_entries.front());
    m_entries.pop_front();
    m_liveBytes -= liveBytes(entry);
    return entry;
}

bool PFrameHandoff::claimWake() {
    const std::lock_guard lock(m_mutex);
    return !std::exchange(m_wakePosted, true);
}

std::size_t PFrameHandoff::wakeArrived() {
    const std::lock_guard lock(m_mutex);
    m_wakePosted = false;
    return m_entries.size();
}

std::size_t PFrameHandoff::size() const {
    const std::lock_guard lock(m_mutex);
    return m_entries.size();
}

void PFrameHandoff::setByteLimit(std::size_t byteLimit) {
    const std::lock_guard lock(m_mutex);
    m_byteLimit = byteLimit;
}

std::size_t PFrameHandoff::liveBytes(const Entry& entry) {
    return entry.kind == PFrameSink::Kind::Live ? entry.frame.image.dataSize() : 0;
}
