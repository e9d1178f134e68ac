// SPDX-License-Identifier: MIT
#include <PCore/call/PCallSlot.h>

#include <PCore/PFaultStack.h>
#include <PCore/call/PCallText.h>

#include <algorithm>
#include <mutex>
#include <utility>

#include <unistd.h>

__thread PCallSlot* PCallSlot::s_ofThread = nullptr;

namespace {

/// The list of all slots, for those who read without a lock.
std::atomic<PCallSlot*> newestSlot{nullptr};

} // namespace

/// All slots: used by threads, or free for the next thread.
class PCallSlots {
public:
    /// Never deleted: threads may end after the objects with static lifetime.
    static PCallSlots& instance() {
        static auto* const all = new PCallSlots;
        return *all;
    }

    PCallSlot* take() {
        const std::lock_guard lock(m_mutex);
        PCallSlot* const slot = m_free.empty() ? add() : m_free.back();
        if (!m_free.empty())
            m_free.pop_back();
        slot->takeFor(::gettid());
        return slot;
    }

    void giveBack(PCallSlot* slot) {
        slot->leave();
        slot->m_thread = 0;
        const std::lock_guard lock(m_mutex);
        m_free.push_back(slot);
    }

    /// Ends the use of a thread's slot.
    struct Return {
        PCallSlot*& slot;
        ~Return() { instance().giveBack(std::exchange(slot, nullptr)); }
    };

private:
    static PCallSlot* add() {
        auto* const slot = new PCallSlot; // never deleted: a signal handler may be reading it
        slot->m_older = newestSlot;
        newestSlot = slot;
        return slot;
    }

    std::mutex m_mutex; // guards m_free, and adding slots, between threads that begin and end
    std::vector<PCallSlot*> m_free;
};

PCallSlot::PCallSlot()
    : m_present(m_records.data()) {
    for (std::size_t i = 0; i < records; ++i)
        m_records[i].m_next = &m_records[(i + 1) % records];
}

PCallSlot& PCallSlot::claim() {
    PFaultStack::giveThread();
    s_ofThread = PCallSlots::instance().take();
    static thread_local const PCallSlots::Return atEnd{s_ofThread};
    return *s_ofThread;
}

/// Without the calls of the thread that had it before.
void PCallSlot::takeFor(int thread) {
    for (PCallRecord& record : m_records)
        record.clear();
    m_thread = thread;
}

std::vector<PCallSlot*> PCallSlot::all() {
    std::vector<PCallSlot*> inOrder;
    for (PCallSlot* slot = newestSlot; slot != nullptr; slot = slot->m_older)
        inOrder.push_back(slot);
    std::reverse(inOrder.begin(), inOrder.end());
    return inOrder;
}

const PCallSlot* PCallSlot::newest() {
    return newestSlot;
}

QString PCallSlot::text() const {
    const PCallRecord& call = present();
    PCallText text;
    if (!call.isMarked() || !call.write(text) || !isMarked())
        return {};
    return QString::fromLatin1(text.view().data(), qsizetype(text.view().size()));
}
