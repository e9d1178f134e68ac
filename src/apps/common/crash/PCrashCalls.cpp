// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashCalls.h>

#include <apps/common/crash/PCrashWriter.h>

#include <PCore/call/PCallSlot.h>
#include <PCore/call/PCallText.h>

#include <unistd.h>

namespace {

void writeThread(PCrashWriter& writer, const PCallSlot& slot) {
    const int thread = slot.thread();
    if (thread == 0)
        writer << "A thread that has ended:\n";
    else
        writer << "Thread " << thread
               << (thread == ::gettid() ? ", in which the fault was:\n" : ":\n");
}

/// The calls of one thread.
class CallLines {
public:
    CallLines(PCrashWriter& writer, const PCallSlot& slot)
        : m_writer(writer)
        , m_slot(slot) {}

    void write() {
        const PCallRecord& present = m_slot.present();
        for (const PCallRecord* call = present.next(); call != &present; call = call->next())
            writeCall(*call, "\n");
        writeCall(present, ", in progress\n");
    }

private:
    void writeCall(const PCallRecord& call, const char* end) {
        PCallText text;
        if (!call.write(text))
            return;
        if (!m_hasBegun)
            writeThread(m_writer, m_slot);
        m_hasBegun = true;
        m_writer << "  ";
        m_writer.write(text.view().data(), text.view().size());
        m_writer << end;
    }

    PCrashWriter& m_writer;
    const PCallSlot& m_slot;
    bool m_hasBegun = false;
};

} // namespace

void PCrashCalls::writeTo(PCrashWriter& writer) {
    for (const PCallSlot* slot = PCallSlot::newest(); slot != nullptr; slot = slot->older())
        CallLines(writer, *slot).write();
}
