// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameWriteQueue.h>

#include <apps/common/program/PExceptionText.h>

#include <algorithm>
#include <exception>
#include <utility>

PFrameWriteQueue::PFrameWriteQueue(Write write, int writers, std::shared_ptr<PWorkBudget> memory,
                                   std::size_t leastCost)
    : m_write(std::move(write))
    , m_leastCost(leastCost)
    , m_work(std::move(memory), writers) {
}

bool PFrameWriteQueue::push(const PDeviceFrame& frame) {
    // Under one lock: numbers follow the order of the work, and after a failure nothing is added.
    const std::lock_guard lock(m_mutex);
    const quint64 number = m_lastNumber + 1;
    const auto write = [this, frame, number] { return tryWrite(frame, number); };
    const auto done = [this](const PStatus& result) { count(result); };
    const std::size_t cost = std::max(frame.image.dataSize(), m_leastCost);
    if (!m_state.error.isEmpty() || !m_work.push(cost, write, done)) {
        ++m_state.refused;
        return false;
    }
    m_lastNumber = number;
    ++m_state.waiting;
    return true;
}

PFrameWriteQueue::State PFrameWriteQueue::state() const {
    const std::lock_guard lock(m_mutex);
    return m_state;
}

/// On a writer's thread, without the lock: the camera's thread must not wait for the disk.
PStatus PFrameWriteQueue::tryWrite(const PDeviceFrame& frame, quint64 number) const {
    try {
        return m_write(frame, number);
    } catch (const std::exception& error) {
        return PStatus::failure(
            tr("cannot save frame %1: %2").arg(QString::number(number), PExceptionText::of(error)));
    }
}

/// Counts a frame after an attempt to write it.
void PFrameWriteQueue::count(const PStatus& result) {
    const std::lock_guard lock(m_mutex);
    --m_state.waiting;
    ++(result.isOk() ? m_state.written : m_state.failed);
    if (!result.isOk() && m_state.error.isEmpty())
        giveUp(result.reason());
}

/// The recording ends: writing the waiting frames would leave a gap in it. Called under the lock.
void PFrameWriteQueue::giveUp(const QString& error) {
    m_state.error = error;
    const std::size_t dropped = m_work.discard();
    m_state.waiting -= dropped;
    m_state.failed += dropped;
}
