// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/call/PCallRecord.h>

#include <QString>

#include <array>
#include <atomic>
#include <vector>

/// Which call a thread is in, and its newest calls before that, written by that thread without a
/// lock or a clock, and read by another, or by a signal handler. Calls do not nest: an inner one
/// replaces the outer one.
class PCD_EXPORT PCallSlot {
public:
    static constexpr std::size_t records = 32; ///< of calls: the present one and those before it

    PCallSlot();
    PCallSlot(const PCallSlot&) = delete;
    PCallSlot& operator=(const PCallSlot&) = delete;

    /// The slot of the calling thread, which returns it at its end.
    static PCallSlot& ofThread() { return s_ofThread != nullptr ? *s_ofThread : claim(); }
    /// The same, but null before the first ofThread() of the thread.
    static PCallSlot* ofThreadIfAny() { return s_ofThread; }
    /// The slots of all threads, some of them unused, in the order in which they were made; none is
    /// ever deleted. Any thread.
    static std::vector<PCallSlot*> all();
    /// The slot that was made last, and the one before this one; null if there is none. Any thread,
    /// also in a signal handler.
    static const PCallSlot* newest();
    const PCallSlot* older() const { return m_older; }

    /// The record of the call that the thread is in, or of the next one. Any thread.
    PCallRecord& present() { return *m_present.load(std::memory_order_acquire); }
    const PCallRecord& present() const { return *m_present.load(std::memory_order_acquire); }
    /// Ends the present call, if any. The slot's thread.
    void leave() {
        PCallRecord* const next = m_present.load(std::memory_order_relaxed)->next();
        next->clear();
        m_present.store(next, std::memory_order_release);
    }

    /// Marks the call that the thread is in; false if it is in none. The mark is gone as soon as
    /// that call ends. Any thread.
    bool mark() { return present().mark(); }
    /// True while the thread is in the call that mark() has marked. Any thread.
    bool isMarked() const { return present().isMarked(); }
    /// "name(arguments)" of the marked call; empty if it ended meanwhile. Any thread.
    QString text() const;

    /// The system's number of the thread that has the slot; 0 if none has it now. Any thread, also
    /// in a signal handler.
    int thread() const { return m_thread.load(std::memory_order_acquire); }

private:
    friend class PCallSlots;

    static PCallSlot& claim();
    void takeFor(int thread);

    // In the thread's own block, so that access takes two instructions and no call.
    [[gnu::tls_model("initial-exec")]] static __thread PCallSlot* s_ofThread;

    std::array<PCallRecord, records> m_records; ///< in a ring
    std::atomic<PCallRecord*> m_present;
    std::atomic<int> m_thread{0};
    PCallSlot* m_older = nullptr; ///< never changes once the slot is in the list
};
