// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceFrame.h>
#include <PCd/frame/PFrameSink.h>

#include <PCore/PExport.h>

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

/// The frames that wait for a device's thread: a queue bounded in bytes. Any thread.
class PCD_TEST_EXPORT PFrameHandoff {
public:
    /// A queued frame.
    struct Entry {
        PDeviceFrame frame;
        PFrameSink::Kind kind = PFrameSink::Kind::Live;
        bool settled = false; ///< its outcome has been counted
    };

    explicit PFrameHandoff(std::size_t byteLimit);

    /// Queues an entry. Returns false, and does not queue it, if it is a live frame that would
    /// exceed the byte limit; a queue without live frames accepts one of any size. Snapshots are
    /// always accepted.
    bool push(Entry entry);

    /// The oldest entry, or nothing.
    std::optional<Entry> take();

    /// True once after a push while no wake-up is pending: the caller wakes the device's thread.
    bool claimWake();
    /// The device's thread has woken up; the next push needs a new wake-up. Returns the number of
    /// frames that wait, as size() does.
    std::size_t wakeArrived();

    /// The number of frames that wait, snapshots included.
    std::size_t size() const;
    /// Limits the bytes of live frames that may wait; applies to later pushes.
    void setByteLimit(std::size_t byteLimit);

private:
    static std::size_t liveBytes(const Entry& entry);

    mutable std::mutex m_mutex; // pushed by frame threads, taken by the device's thread
    std::deque<Entry> m_entries;
    std::size_t m_liveBytes = 0;
    std::size_t m_byteLimit;
    bool m_wakePosted = false;
};
