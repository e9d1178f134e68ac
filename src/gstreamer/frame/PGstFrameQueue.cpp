// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstFrameQueue.h>

#include <algorithm>
#include <iterator>
#include <utility>

void PGstFrameQueue::setCapacity(std::size_t frames) {
    const std::lock_guard lock(m_mutex);
    m_capacity = std::max<std::size_t>(frames, 1);
}

void PGstFrameQueue::begin() {
    const std::lock_guard lock(m_mutex);
    m_counts = {};
    m_droppedSince = 0;
    m_isAccepting = true;
}

void PGstFrameQueue::end() {
    std::deque<Item> items; // deleted without the lock: frames return their memory
    const std::lock_guard lock(m_mutex);
    discard();
    items.swap(m_items);
    std::copy_if(items.begin(), items.end(), std::back_inserter(m_items),
                 [](const Item& item) { return item.kind != Item::Kind::Frame; });
}

void PGstFrameQueue::clear() {
    std::deque<Item> items; // as in end()
    const std::lock_guard lock(m_mutex);
    discard();
    items.swap(m_items);
}

/// Counts the frames that wait as lost, and lets no more come. The caller removes them.
void PGstFrameQueue::discard() {
    m_isAccepting = false;
    m_counts.discarded += std::exchange(m_counts.waiting, 0);
}

bool PGstFrameQueue::takeFrame(const PDeviceFrame& frame, Kind kind) {
    if (kind != Kind::Live)
        return true; // a still, or a frame that was here before
    const std::lock_guard lock(m_mutex);
    if (!m_isAccepting)
        return true;
    ++m_counts.arrived;
    while (m_counts.waiting >= m_capacity)
        dropOldest();
    m_items.push_back({Item::Kind::Frame, frame, 0, {}});
    ++m_counts.waiting;
    m_changed.notify_all();
    return true;
}

/// The newest frame is worth most in a live picture.
void PGstFrameQueue::dropOldest() {
    m_items.erase(std::find_if(m_items.begin(), m_items.end(),
                               [](const Item& item) { return item.kind == Item::Kind::Frame; }));
    --m_counts.waiting;
    ++m_counts.dropped;
    ++m_droppedSince;
}

void PGstFrameQueue::report(Item::Kind kind, const QString& text) {
    const std::lock_guard lock(m_mutex);
    m_items.push_back({kind, {}, 0, text});
    m_changed.notify_all();
}

std::optional<PGstFrameQueue::Item> PGstFrameQueue::take() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isFlushing || !m_items.empty(); });
    if (m_isFlushing)
        return std::nullopt;
    Item item = std::move(m_items.front());
    m_items.pop_front();
    if (item.kind == Item::Kind::Frame) {
        --m_counts.waiting;
        ++m_counts.delivered;
        item.dropped = std::exchange(m_droppedSince, 0);
    }
    return item;
}

void PGstFrameQueue::setFlushing(bool flushing) {
    const std::lock_guard lock(m_mutex);
    m_isFlushing = flushing;
    m_changed.notify_all();
}

PGstFrameQueue::Counts PGstFrameQueue::counts() const {
    const std::lock_guard lock(m_mutex);
    return m_counts;
}
